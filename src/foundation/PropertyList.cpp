#include "foundation/PropertyList.h"

#include <algorithm>

namespace kestro {
namespace {

constexpr std::size_t fewestIndexed = 32;

}  // namespace

PropertyListDictionary::PropertyListDictionary() = default;
PropertyListDictionary::PropertyListDictionary(std::initializer_list<PropertyListMember> members)
    : members_(members) {
  indexPlaces();
}
PropertyListDictionary::PropertyListDictionary(const PropertyListDictionary&) = default;
PropertyListDictionary::PropertyListDictionary(PropertyListDictionary&&) noexcept = default;
PropertyListDictionary& PropertyListDictionary::operator=(const PropertyListDictionary&) = default;
PropertyListDictionary& PropertyListDictionary::operator=(PropertyListDictionary&&) noexcept =
    default;
PropertyListDictionary::~PropertyListDictionary() = default;

std::size_t PropertyListDictionary::placeOf(std::string_view key) const {
  if (members_.size() < fewestIndexed) {
    const auto found = std::ranges::find(members_, key, &PropertyListMember::key);
    return static_cast<std::size_t>(found - members_.begin());
  }
  const auto found = places_.find(key);
  return found == places_.end() ? members_.size() : found->second;
}

void PropertyListDictionary::indexPlaces() {
  places_.clear();
  if (members_.size() < fewestIndexed) return;
  for (std::size_t index = 0; index < members_.size(); ++index)
    places_.emplace(members_[index].key, index);
}

const PropertyList* PropertyListDictionary::find(std::string_view key) const {
  const std::size_t place = placeOf(key);
  return place == members_.size() ? nullptr : &members_[place].value;
}

void PropertyListDictionary::set(std::string key, PropertyList value) {
  const std::size_t place = placeOf(key);
  if (place < members_.size()) {
    members_[place].value = std::move(value);
    return;
  }
  members_.push_back({std::move(key), std::move(value)});
  if (members_.size() == fewestIndexed) {
    indexPlaces();
  } else if (members_.size() > fewestIndexed) {
    places_.emplace(members_.back().key, members_.size() - 1);
  }
}

void PropertyListDictionary::remove(std::string_view key) {
  const std::size_t place = placeOf(key);
  if (place == members_.size()) return;
  members_.erase(members_.begin() + static_cast<std::ptrdiff_t>(place));
  indexPlaces();
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
