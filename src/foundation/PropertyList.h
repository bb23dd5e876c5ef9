// A property-list value: what preferences store and what transcripts report. A plain value type;
// dictionaries keep the order in which their members were added.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "foundation/Date.h"

namespace kestro {

class PropertyList;
struct PropertyListMember;

using Data = std::vector<std::uint8_t>;
using PropertyListArray = std::vector<PropertyList>;

// Members in insertion order. Comparison ignores that order, as a dictionary's does.
class PropertyListDictionary {
 public:
  PropertyListDictionary();
  PropertyListDictionary(std::initializer_list<PropertyListMember> members);
  PropertyListDictionary(const PropertyListDictionary&);
  PropertyListDictionary(PropertyListDictionary&&) noexcept;
  PropertyListDictionary& operator=(const PropertyListDictionary&);
  PropertyListDictionary& operator=(PropertyListDictionary&&) noexcept;
  ~PropertyListDictionary();

  // The value under `key`, or null when there is none. Valid until the dictionary changes.
  const PropertyList* find(std::string_view key) const;
  // Adds the member, or replaces the value of the one that has this key.
  void set(std::string key, PropertyList value);
  // As `set`, but does nothing when the value is absent.
  template <class Value>
  void setIfPresent(std::string key, const std::optional<Value>& value);
  void remove(std::string_view key);
  bool empty() const;
  std::vector<PropertyListMember>::const_iterator begin() const;
  std::vector<PropertyListMember>::const_iterator end() const;
  bool operator==(const PropertyListDictionary&) const;

 private:
  struct TextHash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  // The number of members when there is none of that key.
  std::size_t placeOf(std::string_view key) const;
  void indexPlaces();

  std::vector<PropertyListMember> members_;
  // The place of each key in large dictionaries, where a search from the start would take long.
  std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> places_;
};

class PropertyList {
 public:
  using Variant = std::variant<bool, std::int64_t, double, std::string, Date, Data,
                               PropertyListArray, PropertyListDictionary>;

  PropertyList(bool value) : value_(value) {}
  template <std::integral Integer>
  requires(!std::same_as<Integer, bool>) PropertyList(Integer value)
      : value_(static_cast<std::int64_t>(value)) {}
  PropertyList(double value) : value_(value) {}
  PropertyList(std::string value) : value_(std::move(value)) {}
  PropertyList(std::string_view value) : value_(std::string(value)) {}
  PropertyList(const char* value) : value_(std::string(value)) {}
  PropertyList(Date value) : value_(value) {}
  PropertyList(Data value) : value_(std::move(value)) {}
  PropertyList(PropertyListArray value) : value_(std::move(value)) {}
  PropertyList(PropertyListDictionary value) : value_(std::move(value)) {}
  PropertyList(const std::vector<std::string>& texts);

  const Variant& variant() const { return value_; }
  template <class Type>
  const Type* get() const {
    return std::get_if<Type>(&value_);
  }
  bool operator==(const PropertyList&) const = default;

 private:
  Variant value_;
};

struct PropertyListMember {
  std::string key;
  PropertyList value;
  bool operator==(const PropertyListMember&) const = default;
};

template <class Value>
void PropertyListDictionary::setIfPresent(std::string key, const std::optional<Value>& value) {
  if (value) set(std::move(key), PropertyList(*value));
}

}  // namespace kestro
