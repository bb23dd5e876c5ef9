#include "scene/SceneStatusBar.h"

#include <algorithm>
#include <utility>

#include "platform/ModifierNames.h"

namespace kestro {
namespace {

std::string_view nameOf(TextAlignment alignment) {
  return alignment == TextAlignment::right ? "right" : "left";
}

std::string_view nameOf(TextTruncation truncation) {
  return truncation == TextTruncation::middle ? "middle" : "end";
}

// What the transcript tells of an item.
PropertyListDictionary eventFields(const StatusItemProperties& properties) {
  PropertyListDictionary fields{{"autosaveName", properties.autosaveName}};
  fields.setIfPresent("maxWidth", properties.maxWidth);
  fields.set("alignment", nameOf(properties.alignment));
  fields.set("truncation", nameOf(properties.truncation));
  fields.set("visible", properties.isVisible);
  fields.set("highlighted", properties.isHighlighted);
  return fields;
}

PropertyListDictionary changedFields(const PropertyListDictionary& before,
                                     const PropertyListDictionary& after) {
  PropertyListDictionary changed;
  for (const PropertyListMember& member : after) {
    const PropertyList* old = before.find(member.key);
    if (!old || *old != member.value) changed.set(member.key, member.value);
  }
  return changed;
}

PropertyListArray eventRows(const std::vector<MenuItem>& items);

PropertyListDictionary eventRow(const MenuItem& item) {
  if (item.isSeparator) return {{"separator", true}};
  PropertyListDictionary row;
  if (!item.action.empty()) row.set("action", item.action);
  if (item.tag != 0) row.set("tag", item.tag);
  row.set("title", item.title);
  row.set("enabled", item.isEnabled);
  if (item.isChecked) row.set("checked", true);
  if (item.isHidden) row.set("hidden", true);
  if (!item.keyEquivalent.key.empty()) {
    row.set("key", item.keyEquivalent.key);
    row.set("modifiers", modifierNames(item.keyEquivalent.modifiers));
  }
  row.setIfPresent("image", item.image);
  if (!item.submenu.empty()) row.set("rows", eventRows(item.submenu));
  return row;
}

PropertyListArray eventRows(const std::vector<MenuItem>& items) {
  PropertyListArray rows;
  for (const MenuItem& item : items)
    rows.emplace_back(eventRow(item));
  return rows;
}

const MenuItem* chosenRow(const std::vector<MenuItem>& items, const std::string& action,
                          const std::optional<std::int64_t>& tag) {
  for (const MenuItem& item : items) {
    if (item.isHidden || !item.isEnabled) continue;
    if (item.action == action && (!tag || item.tag == *tag)) return &item;
    if (const MenuItem* found = chosenRow(item.submenu, action, tag)) return found;
  }
  return nullptr;
}

}  // namespace

class SceneStatusBar::Item final : public StatusItem {
 public:
  Item(SceneStatusBar& owner, StatusItemProperties properties, StatusItemDelegate& delegate)
      : owner_(owner), properties_(std::move(properties)), delegate_(delegate) {
    owner_.item_ = this;
    owner_.transcript_.record("statusItem", eventFields(properties_));
  }
  ~Item() override {
    if (owner_.item_ == this) owner_.item_ = nullptr;
  }
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;

  const StatusItemProperties& properties() const override { return properties_; }
  void setProperties(StatusItemProperties properties) override {
    auto changed = changedFields(eventFields(properties_), eventFields(properties));
    properties_ = std::move(properties);
    if (!changed.empty()) owner_.transcript_.record("statusItem", std::move(changed));
  }
  void observeEffectiveAppearance(std::function<void()> observer) override {
    appearanceObserver_ = std::move(observer);
  }

  void changeAppearance() const {
    if (appearanceObserver_) appearanceObserver_();
  }
  void openMenu(bool isOptionKeyHeld) {
    closeMenu();
    isOpen_ = true;
    delegate_.menuWillOpen(isOptionKeyHeld);
    owner_.transcript_.record("menu", {{"rows", eventRows(delegate_.validatedMenu().items)}});
  }
  void closeMenu() {
    if (std::exchange(isOpen_, false)) delegate_.menuDidClose();
  }
  void click(const std::string& action, const std::optional<std::int64_t>& tag) {
    const MenuItem* row = chosenRow(delegate_.validatedMenu().items, action, tag);
    const std::int64_t chosenTag = row ? row->tag : 0;
    closeMenu();
    if (row) delegate_.perform(action, chosenTag);
  }

 private:
  SceneStatusBar& owner_;
  StatusItemProperties properties_;
  StatusItemDelegate& delegate_;
  std::function<void()> appearanceObserver_;
  bool isOpen_ = false;
};

std::unique_ptr<StatusItem> SceneStatusBar::makeStatusItem(StatusItemProperties properties,
                                                           StatusItemDelegate& delegate) {
  return std::make_unique<Item>(*this, std::move(properties), delegate);
}

void SceneStatusBar::changeAppearance() const {
  if (item_) item_->changeAppearance();
}

void SceneStatusBar::openMenu(bool isOptionKeyHeld) {
  if (item_) item_->openMenu(isOptionKeyHeld);
}

void SceneStatusBar::click(const std::string& action, const std::optional<std::int64_t>& tag) {
  if (item_) item_->click(action, tag);
}

void SceneStatusBar::closeMenu() {
  if (item_) item_->closeMenu();
}

}  // namespace kestro
