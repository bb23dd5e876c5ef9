#include "platform/ElementSearch.h"

namespace kestro {

bool ElementCondition::holdsFor(const AttributeValue& value) const {
  if (const auto* single = value.get<std::string>()) return *single == text;
  if (const auto* address = value.get<WebAddress>()) return address->absoluteString == text;
  const auto* list = value.get<AttributeValue::List>();
  if (!list) return false;
  bool isAmong = false;
  for (const AttributeValue& member : *list) {
    const auto* found = member.get<std::string>();
    if (!found) return false;
    isAmong = isAmong || *found == text;
  }
  return isAmong;
}

}  // namespace kestro
