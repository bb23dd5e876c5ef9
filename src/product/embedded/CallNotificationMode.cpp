#include <array>

#include "platform/Process.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr const char* modeKey = "callNotificationMode";

struct ModeName {
  CallNotificationMode mode;
  std::string_view text;
};
constexpr std::array<ModeName, 3> modeNames{{{CallNotificationMode::notification, "notification"},
                                             {CallNotificationMode::popover, "popover"},
                                             {CallNotificationMode::none, "none"}}};

// The stored one or, before the user has chosen, that of the product's conditions.
std::string storedText(Process& process) {
  if (const auto stored = process.shared<HelperPreferences>().getString(modeKey)) return *stored;
  const PropertyList* given = process.platform().productConditions.find(modeKey);
  const auto* text = given ? given->get<std::string>() : nullptr;
  return text ? *text : "";
}

}  // namespace

CallNotificationMode callNotificationMode(Process& process) {
  const std::string text = storedText(process);
  for (const ModeName& name : modeNames) {
    if (name.text == text) return name.mode;
  }
  return CallNotificationMode::notification;
}

void setCallNotificationMode(Process& process, CallNotificationMode mode) {
  process.shared<HelperPreferences>().set(modeNames.at(static_cast<std::size_t>(mode)).text,
                                          modeKey);
}

}  // namespace kestro
