#include "product/Shortcuts.h"

#include <algorithm>

#include "platform/ModifierNames.h"
#include "platform/Process.h"
#include "product/KestroLegacy.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {
namespace {

ModifierKeys modifiersIn(const PropertyList* value) {
  ModifierKeys modifiers;
  const auto* names = value ? value->get<PropertyListArray>() : nullptr;
  if (!names) return modifiers;
  for (const PropertyList& name : *names) {
    const auto* text = name.get<std::string>();
    if (const auto modifier = text ? modifierNamed(*text) : std::nullopt) {
      modifiers.push_back(*modifier);
    }
  }
  std::ranges::sort(modifiers);
  return modifiers;
}

}  // namespace

std::optional<MASShortcut> MASShortcut::fromPropertyList(const PropertyList& value) {
  const auto* fields = value.get<PropertyListDictionary>();
  const PropertyList* key = fields ? fields->find("key") : nullptr;
  const auto* text = key ? key->get<std::string>() : nullptr;
  if (!text || text->empty()) return std::nullopt;
  return MASShortcut({*text, modifiersIn(fields->find("modifiers"))});
}

std::optional<MASShortcut> fakeShortcutTransformer(const MASShortcut& stored) {
  return stored;
}

std::optional<MASShortcut> fakeShortcutWithExtraShiftTransformer(const MASShortcut& stored) {
  KeyEquivalent keys = stored.keys();
  if (std::ranges::find(keys.modifiers, ModifierKey::shift) != keys.modifiers.end()) return {};
  keys.modifiers.push_back(ModifierKey::shift);
  return MASShortcut(std::move(keys));
}

MASShortcutBinder& MASShortcutBinder::sharedBinder(Process& process) {
  return process.shared<MASShortcutBinder>();
}

MASShortcutBinder::MASShortcutBinder(Process& process)
    : process_(process), transformer_(fakeShortcutTransformer) {}

MASShortcutBinder::~MASShortcutBinder() = default;

void MASShortcutBinder::setBindingOptions(ShortcutTransformer valueTransformer) {
  recordOperation(process_, "MASShortcutBinder setBindingOptions");
  transformer_ = valueTransformer;
}

void MASShortcutBinder::bindShortcutWithDefaultsKey(const std::string& key,
                                                    std::function<void()> action) {
  recordOperation(process_, "MASShortcutBinder bindShortcutWithDefaultsKey", {key});
  grabs_.erase(key);
  const auto stored = process_.shared<HelperPreferences>().getShortcut(key);
  const auto shortcut = stored ? transformer_(*stored) : std::nullopt;
  if (!shortcut) return;
  grabs_[key] = process_.platform().globalShortcuts.grab(shortcut->keys(), std::move(action));
}

}  // namespace kestro
