// Preferences: the helper's own standard domain, other applications' domains, and the product's two
// stores. Main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PropertyList.h"

namespace kestro {

// One domain of preferences. A read sees the value as it is now, also when it was changed from
// outside. Typed reads are absent when the key is absent or its value cannot count as the type.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual std::optional<PropertyList> value(std::string_view key) const = 0;
  virtual void set(std::string_view key, PropertyList value) = 0;
  virtual void remove(std::string_view key) = 0;
  // Waits until every change is where other processes see it.
  virtual void synchronize() = 0;

  // A boolean, a number (false when zero), or one of the texts YES, TRUE, NO, FALSE in any letter
  // case, or a text that begins with a number.
  std::optional<bool> boolean(std::string_view key) const;
  // A number or a boolean, cut to a whole number, or the number at the beginning of a text.
  std::optional<std::int64_t> integer(std::string_view key) const;
  // A number, or the one at the beginning of a text, as the designed platform reads them ("3", "2.5
  // s"); a boolean is none.
  std::optional<double> number(std::string_view key) const;
  // A text only.
  std::optional<std::string> string(std::string_view key) const;
  // A list of texts only; a list with any other member is absent.
  std::optional<std::vector<std::string>> stringList(std::string_view key) const;
};

// The product's stores, which the main application and the helper share.
enum class ProductStore { helperPreferences, mainAppPreferences };

class UserDefaultsDatabase {
 public:
  virtual ~UserDefaultsDatabase() = default;

  virtual UserDefaults& standard() = 0;
  // Another application's domain; null when it cannot be opened. Valid while the database lives.
  virtual UserDefaults* suite(std::string_view name) = 0;
  virtual UserDefaults& product(ProductStore store) = 0;
};

}  // namespace kestro
