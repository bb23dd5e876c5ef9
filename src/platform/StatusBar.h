// The helper's item in the desktop's status bar, with its menu. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Menu.h"

namespace kestro {

enum class TextAlignment { left, right };
enum class TextTruncation { end, middle };

struct StatusItemProperties {
  std::string autosaveName;        // under which the desktop remembers the item's place
  std::optional<double> maxWidth;  // points; absent: no bound
  TextAlignment alignment = TextAlignment::left;
  TextTruncation truncation = TextTruncation::end;
  bool isVisible = true;
  bool isHighlighted = false;
  std::string title;
  std::string image;  // by name

  bool operator==(const StatusItemProperties&) const = default;
};

// Owns the menu's content and does what its rows say.
class StatusItemDelegate {
 public:
  virtual ~StatusItemDelegate() = default;

  // The user opens the menu, perhaps with the Option key held.
  virtual void menuWillOpen(bool isOptionKeyHeld) = 0;
  virtual void menuDidClose() = 0;
  // The rows as they are to be shown now.
  virtual const Menu& validatedMenu() = 0;
  // The user chose an enabled row.
  virtual void perform(const std::string& action, std::int64_t tag) = 0;
};

// Shown from its creation until it is destroyed.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  virtual const StatusItemProperties& properties() const = 0;
  virtual void setProperties(StatusItemProperties properties) = 0;
  // Calls back when the desktop shows the item in other colours; null: no longer.
  virtual void observeEffectiveAppearance(std::function<void()> observer) = 0;
};

class StatusBar {
 public:
  virtual ~StatusBar() = default;
  // The delegate must outlive the item.
  virtual std::unique_ptr<StatusItem> makeStatusItem(StatusItemProperties properties,
                                                     StatusItemDelegate& delegate) = 0;
};

}  // namespace kestro
