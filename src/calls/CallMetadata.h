// What is known about a call, and what follows from it. Plain values.
#pragma once

#include <optional>
#include <string>

#include "foundation/Date.h"

namespace kestro {

class Process;

struct CallMetadata {
  std::optional<std::string> serviceName;  // of a known call service: "Zoom"
  std::optional<std::string> appName;      // of the application that holds the call
  std::optional<std::string> meetingTitle;
  bool audioInAndOutAssertionsHaveBeenRecordedSeparately = false;

  // What the call is offered under. Absent when the evidence is too weak to offer it at all.
  std::optional<std::string> effectiveServiceName(Process& process) const;
  // "Zoom call: Weekly sync", or the meeting's title alone, as the user prefers; absent without an
  // effective service name.
  std::optional<std::string> timeEntryTitle(Process& process) const;

  // Takes over what the newer sample knows, and keeps the rest.
  void merge(const CallMetadata& newer);

  bool operator==(const CallMetadata&) const = default;
};

struct CallProperties {
  Date startedAt;  // time of the sample that first saw the call
  Date lastSeen;
  CallMetadata metadata;

  Seconds duration() const { return lastSeen - startedAt; }
  bool operator==(const CallProperties&) const = default;
};

// An application that is in a call in one sample.
struct ApplicationAndMetadata {
  std::string bundleIdentifier;
  CallMetadata metadata;

  // As the designed platform's language prints a record.
  std::string description() const;
};

}  // namespace kestro
