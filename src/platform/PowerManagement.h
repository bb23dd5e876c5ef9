// The power-management assertions that processes hold: what keeps the machine awake, and on whose
// behalf. Main thread only.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "foundation/PropertyList.h"
#include "platform/Accessibility.h"

namespace kestro {

class PowerManagement {
 public:
  // By the process that each assertion is listed under, under the designed platform's keys
  // (AssertType, AssertName, ResourcesUsed, …); nothing is promised about the types of the values.
  using AssertionsByProcess = std::map<ProcessIdentifier, std::vector<PropertyListDictionary>>;

  virtual ~PowerManagement() = default;

  // Absent when the platform cannot tell, or tells something of another shape.
  virtual std::optional<AssertionsByProcess> assertionsByProcess() = 0;
};

}  // namespace kestro
