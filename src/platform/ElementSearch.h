// What a search looks for in a tree of elements, for callers and for backends that can answer it in
// bulk.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/AttributeValue.h"

namespace kestro {

// What an attribute must say. A value of another type counts as absent: it meets no condition.
struct ElementCondition {
  enum class Kind {
    text,      // it is this text
    sameText,  // it is a text of this comparable form (foundation/ComparableText.h)
    member,    // it is a list of nothing but texts, this one among them
    address,   // it is a web address whose absolute form this is, or this text
  };

  std::string_view attribute;
  std::string text;
  Kind kind = Kind::text;

  // The attribute is a text that says the same.
  static ElementCondition says(std::string_view attribute, std::string_view text);

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
