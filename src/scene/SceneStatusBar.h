// The status bar of a scripted desktop: changes of the item and its opened menu are recorded, steps
// open, click and close. Main thread only; what it refers to must outlive it.
#pragma once

#include "platform/StatusBar.h"
#include "platform/Transcript.h"

namespace kestro {

class SceneStatusBar final : public StatusBar {
 public:
  explicit SceneStatusBar(Transcript& transcript) : transcript_(transcript) {}

  std::unique_ptr<StatusItem> makeStatusItem(StatusItemProperties properties,
                                             StatusItemDelegate& delegate) override;

  // These do nothing while there is no item, or, for the last, while its menu is not open.
  void changeAppearance() const;
  void openMenu(bool isOptionKeyHeld);
  // Chooses the first row of the action that is shown and enabled, with this tag unless it is
  // absent. The menu closes first.
  void click(const std::string& action, const std::optional<std::int64_t>& tag);
  void closeMenu();

 private:
  class Item;

  Transcript& transcript_;
  Item* item_ = nullptr;  // the one that was made last
};

}  // namespace kestro
