// The fields of one assertion as the platform gives it. A value of another type counts as absent.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "foundation/PropertyList.h"
#include "platform/Accessibility.h"

namespace kestro {

class AssertionFields {
 public:
  // The dictionary must outlive this.
  explicit AssertionFields(const PropertyListDictionary& assertion) : fields_(assertion) {}

  std::optional<std::int64_t> level() const { return value<std::int64_t>("AssertLevel"); }
  std::optional<std::string> type() const { return value<std::string>("AssertType"); }
  std::optional<std::string> trueType() const { return value<std::string>("AssertionTrueType"); }
  std::optional<std::string> name() const { return value<std::string>("AssertName"); }
  std::optional<std::string> processName() const { return value<std::string>("Process Name"); }
  std::optional<Date> startedAt() const { return value<Date>("AssertStartWhen"); }
  // Absent too when the number is none of a process.
  std::optional<ProcessIdentifier> onBehalfOfPID() const;
  // Absent too when the list holds anything but texts.
  std::optional<std::set<std::string>> resourcesUsed() const;

 private:
  template <class Type>
  std::optional<Type> value(std::string_view key) const;

  const PropertyListDictionary& fields_;
};

template <class Type>
std::optional<Type> AssertionFields::value(std::string_view key) const {
  const PropertyList* found = fields_.find(key);
  const Type* typed = found ? found->get<Type>() : nullptr;
  return typed ? std::optional<Type>(*typed) : std::nullopt;
}

}  // namespace kestro
