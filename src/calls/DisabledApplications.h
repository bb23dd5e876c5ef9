// Applications that use audio in both directions without anybody being in a call: players,
// recorders, dictation, music production.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace kestro {

// Bundle identifiers, to be compared exactly. A user can add to them and take from them.
std::set<std::string> builtInDisabledApplications();

// Makers of nothing but audio tools, whatever a user's lists say.
bool isNeverInACall(std::string_view bundleIdentifier);

}  // namespace kestro
