// The file that analytics events are appended to: Analytics.jsonl in the data directory, one event
// a line, readable by its owner alone. An event that cannot be written is lost; that is logged
// once.
#pragma once

#include <fstream>

#include "foundation/PropertyList.h"

namespace kestro {

class Process;

class AnalyticsFile {
 public:
  explicit AnalyticsFile(Process& process) : process_(process) {}

  // The event goes into the file, with its time, and into the transcript.
  void record(PropertyListDictionary event);

 private:
  void append(const PropertyListDictionary& event);
  bool open();

  Process& process_;
  std::ofstream file_;
  bool hasReportedFailure_ = false;
};

}  // namespace kestro
