#include "platform/Process.h"
#include "platform/UserDefaults.h"
#include "product/KestroLegacy.h"

namespace kestro {

bool HelperPreferences::advancedAccessibilityTrackingEnabled() const {
  const UserDefaults& store = process_.platform().defaults.product(ProductStore::helperPreferences);
  return store.boolean("advancedAccessibilityTrackingEnabled").value_or(true);
}

}  // namespace kestro
