#include "platform/ModifierNames.h"

#include <algorithm>
#include <array>

namespace kestro {
namespace {

struct NamedModifier {
  ModifierKey modifier;
  std::string_view name;
};
constexpr std::array<NamedModifier, 4> namedModifiers{{{ModifierKey::command, "command"},
                                                       {ModifierKey::option, "option"},
                                                       {ModifierKey::control, "control"},
                                                       {ModifierKey::shift, "shift"}}};

}  // namespace

std::optional<ModifierKey> modifierNamed(std::string_view name) {
  const auto found = std::ranges::find(namedModifiers, name, &NamedModifier::name);
  return found == namedModifiers.end() ? std::nullopt : std::optional(found->modifier);
}

std::vector<std::string> modifierNames(const ModifierKeys& modifiers) {
  std::vector<std::string> names;
  for (const NamedModifier& named : namedModifiers) {
    if (std::ranges::find(modifiers, named.modifier) != modifiers.end()) {
      names.emplace_back(named.name);
    }
  }
  return names;
}

}  // namespace kestro
