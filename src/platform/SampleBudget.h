// What reading other applications may cost in one sample. Once it is used up, every further request
// of that sample fails at once, and the application that was being read rests: it is read again
// after 2, 4, 8, 16 and then every 30 seconds, until a sample of it ends within the budget. Outside
// of samples (dumps) nothing is counted and nobody rests. Main thread only.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "foundation/Date.h"

namespace kestro {

using ProcessIdentifier = std::int32_t;

class SampleBudget {
 public:
  static constexpr std::uint64_t usualRequests = 20'000;

  void setRequests(std::uint64_t requests) { requests_ = requests; }

  // `now` counts from some moment in the past; nobody sets it back.
  void begin(Seconds now);
  // True when the budget was used up.
  bool end();

  // Whether the process may be asked something now: there is budget left, and it does not rest.
  bool admits(ProcessIdentifier process);
  // Pays for one request to the process that was admitted last; false when nothing is left.
  bool pay();
  // Nothing is left from here on: the time is over.
  void useUp();
  // Whether the process has used up the budget of a sample and is not to be read in this one.
  bool isResting(ProcessIdentifier process) const;

 private:
  struct Rest {
    Seconds length;
    Seconds end;
    bool isInterrupted = false;  // the sample under way reads it
  };

  void lengthenRest(ProcessIdentifier process);
  void forgetOldRests();

  std::uint64_t requests_ = usualRequests;
  bool isUnderWay_ = false;
  bool isUsedUp_ = false;
  std::uint64_t paid_ = 0;
  Seconds now_{};
  std::optional<ProcessIdentifier> asked_;
  std::map<ProcessIdentifier, Rest> rests_;
};

}  // namespace kestro
