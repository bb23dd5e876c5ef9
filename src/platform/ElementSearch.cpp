#include "platform/ElementSearch.h"

#include <algorithm>

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

bool ElementCondition::holdsFor(const AttributeValue& value) const {
  if (kind == Kind::member) return isAmong(text, value);
  const std::string* single = kind == Kind::address ? addressOf(value) : textOf(value);
  return single && *single == text;
}

}  // namespace kestro
