// The designed platform's roles and subroles for those of AT-SPI. Pure functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "linux/accessibility/AtspiObject.h"

namespace kestro {

// What a role alone does not tell.
struct AtspiTraits {
  AtspiStates states;
  std::string xmlRoles;  // the object attributes `xml-roles`, `tag` and `haspopup`: empty outside
  std::string tag;       // web content, and where an element has none
  std::string hasPopup;
  bool isTopLevel = false;  // a child of the application
};

// Whether `axRole` needs `traits.states` (the rest is free), so that they are read only then.
bool roleDependsOnStates(AtspiRole role);
// Whether, in Chromium's pages, it needs the traits that are object attributes.
bool roleDependsOnAttributes(AtspiRole role);
// AXUnknown for a role that has no counterpart.
std::string_view axRole(AtspiRole role, const AtspiTraits& traits);

// Whether `axSubrole` needs the traits that are object attributes.
bool subroleDependsOnAttributes(AtspiRole role);
std::optional<std::string> axSubrole(AtspiRole role, const AtspiTraits& traits);

bool isDocument(AtspiRole role);

// The way back, for searches: every AT-SPI role that `axRole` can give this role for.
struct AtspiRoleChoice {
  std::vector<AtspiRole> roles;
  bool isCertain = true;  // each gives it whatever its traits
};
AtspiRoleChoice atspiRoles(std::string_view axRole);
// The word of `xml-roles` that gives this subrole; empty when it comes from the role alone.
std::string_view xmlRole(std::string_view axSubrole);
std::vector<AtspiRole> atspiRolesOfSubrole(std::string_view axSubrole);

}  // namespace kestro
