// The text of a field that the user may leave empty.
#pragma once

#include <optional>
#include <string>

namespace kestro {

inline std::optional<std::string> nonEmpty(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

}  // namespace kestro
