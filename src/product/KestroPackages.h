// The operations of the product's smaller packages that the helper uses.
#pragma once

#include <cstddef>
#include <optional>

namespace kestro {

// The member at an index, absent when the index is out of range.
template <class List>
auto at(const List& list, std::ptrdiff_t index) -> std::optional<typename List::value_type> {
  if (index < 0 || static_cast<std::size_t>(index) >= list.size()) return std::nullopt;
  return list[static_cast<std::size_t>(index)];
}

}  // namespace kestro
