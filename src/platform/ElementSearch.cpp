#include "platform/ElementSearch.h"

#include <algorithm>

#include "foundation/ComparableText.h"

namespace kestro {
namespace {

const std::string* textOf(const AttributeValue& value) {
  return value.get<std::string>();
}

const std::string* addressOf(const AttributeValue& value) {
  const auto* address = value.get<WebAddress>();
  return address ? &address->absoluteString : textOf(value);
}

bool isAmong(const std::string& text, const AttributeValue& value) {
  const auto* list = value.get<AttributeValue::List>();
  return list && std::ranges::all_of(*list, textOf) &&
         std::ranges::find(*list, AttributeValue(text)) != list->end();
}

}  // namespace

ElementCondition ElementCondition::says(std::string_view attribute, std::string_view text) {
  return {attribute, comparableText(text), Kind::sameText};
}

bool ElementCondition::holdsFor(const AttributeValue& value) const {
  if (kind == Kind::member) return isAmong(text, value);
  const std::string* single = kind == Kind::address ? addressOf(value) : textOf(value);
  if (!single) return false;
  return kind == Kind::sameText ? comparableText(*single) == text : *single == text;
}

}  // namespace kestro
