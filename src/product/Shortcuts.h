// The user's shortcuts, and what they are bound to: part of the product's older shared library.
// Main thread only.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "foundation/PropertyList.h"
#include "platform/GlobalShortcuts.h"

namespace kestro {

class Process;

// A stored shortcut: {"key": "t", "modifiers": ["command", "shift"]}.
class MASShortcut {
 public:
  explicit MASShortcut(KeyEquivalent keys) : keys_(std::move(keys)) {}
  // Absent when the value is none.
  static std::optional<MASShortcut> fromPropertyList(const PropertyList& value);

  const std::string& keyCodeStringForKeyEquivalent() const { return keys_.key; }
  const ModifierKeys& modifierFlags() const { return keys_.modifiers; }
  const KeyEquivalent& keys() const { return keys_; }

 private:
  KeyEquivalent keys_;
};

// Makes the shortcut that is listened to out of the stored one; none when it can make no other.
using ShortcutTransformer = std::optional<MASShortcut> (*)(const MASShortcut&);
// As it is.
std::optional<MASShortcut> fakeShortcutTransformer(const MASShortcut& stored);
// And Shift. One that has Shift already has no such partner: it would do two things in one press.
std::optional<MASShortcut> fakeShortcutWithExtraShiftTransformer(const MASShortcut& stored);

class MASShortcutBinder {
 public:
  static MASShortcutBinder& sharedBinder(Process& process);

  explicit MASShortcutBinder(Process& process);
  ~MASShortcutBinder();
  MASShortcutBinder(const MASShortcutBinder&) = delete;
  MASShortcutBinder& operator=(const MASShortcutBinder&) = delete;

  void setBindingOptions(ShortcutTransformer valueTransformer);
  // Listens to the shortcut that is stored under the key now, instead of the one before; to none
  // when there is none. To be bound anew when the user has changed it.
  void bindShortcutWithDefaultsKey(const std::string& key, std::function<void()> action);

 private:
  Process& process_;
  ShortcutTransformer transformer_;
  std::map<std::string, std::unique_ptr<GlobalShortcut>> grabs_;
};

}  // namespace kestro
