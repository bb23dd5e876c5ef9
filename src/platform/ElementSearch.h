// What a search looks for in a tree of elements, for callers and for backends that can answer it in
// bulk.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/AttributeValue.h"

namespace kestro {

// Holds where the attribute is this text, a web address whose absolute form it is, or a list of
// nothing but texts with this one among them.
struct ElementCondition {
  std::string_view attribute;
  std::string text;

  bool holdsFor(const AttributeValue& value) const;
};

struct ElementSearch {
  // All must hold. An attribute that cannot be read meets no condition.
  std::vector<ElementCondition> conditions;
  // Levels below the element where the search starts; 0 or less: that element only.
  std::int64_t maxDepth;
  // It ends when it has found that many, or looked at that many elements: a tree may lead back to
  // itself.
  std::size_t mostFound;
  std::size_t mostExamined;
};

}  // namespace kestro
