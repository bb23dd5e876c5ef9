#include "foundation/PropertyList.h"

#include <algorithm>

namespace kestro {

PropertyListDictionary::PropertyListDictionary() = default;
PropertyListDictionary::PropertyListDictionary(std::initializer_list<PropertyListMember> members)
    : members_(members) {}
PropertyListDictionary::PropertyListDictionary(const PropertyListDictionary&) = default;
PropertyListDictionary::PropertyListDictionary(PropertyListDictionary&&) noexcept = default;
PropertyListDictionary& PropertyListDictionary::operator=(const PropertyListDictionary&) = default;
PropertyListDictionary& PropertyListDictionary::operator=(PropertyListDictionary&&) noexcept =
    default;
PropertyListDictionary::~PropertyListDictionary() = default;

const PropertyList* PropertyListDictionary::find(std::string_view key) const {
  auto found = std::ranges::find(members_, key, &PropertyListMember::key);
  return found == members_.end() ? nullptr : &found->value;
}

void PropertyListDictionary::set(std::string key, PropertyList value) {
  auto found = std::ranges::find(members_, key, &PropertyListMember::key);
  if (found == members_.end()) {
    members_.push_back({std::move(key), std::move(value)});
  } else {
    found->value = std::move(value);
  }
}

void PropertyListDictionary::remove(std::string_view key) {
  std::erase_if(members_, [&](const PropertyListMember& member) { return member.key == key; });
}

bool PropertyListDictionary::empty() const {
  return members_.empty();
}

std::vector<PropertyListMember>::const_iterator PropertyListDictionary::begin() const {
  return members_.begin();
}

std::vector<PropertyListMember>::const_iterator PropertyListDictionary::end() const {
  return members_.end();
}

bool PropertyListDictionary::operator==(const PropertyListDictionary& other) const {
  return members_.size() == other.members_.size() &&
         std::ranges::all_of(members_, [&](const PropertyListMember& member) {
           const PropertyList* value = other.find(member.key);
           return value && *value == member.value;
         });
}

PropertyList::PropertyList(const std::vector<std::string>& texts)
    : value_(PropertyListArray(texts.begin(), texts.end())) {}

}  // namespace kestro
