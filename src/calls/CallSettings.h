// How calls are detected. Preferences: most are read once per process, the observed ones tell their
// value as it is now.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "foundation/Date.h"
#include "product/KestroLegacy.h"

namespace kestro {

class Process;

struct CallSettings {
  explicit CallSettings(Process& process);

  bool pmAssertionBasedCallDetectionEnabled;  // the master switch
  bool browserBasedCallDetectionEnabled;
  bool callDetectionEnabledForUnknownApps;
  bool alwaysRequiresSeparateAudioAssertions;
  bool requiresSeparateAudioAssertionsIfServiceNameUnknown;
  bool detectCallsWhenTrackingPaused;
  Seconds thresholdForConsideringACallToBeOver;

  PreferenceObserver<bool> includeServiceNamePrefixInCallTaskTitle;
  PreferenceObserver<std::vector<std::string>> appsWithCallTrackingDisabled;
  PreferenceObserver<std::vector<std::string>> appsWithCallTrackingEnabled;

  // Shorter calls are not offered. Read at every call end.
  Seconds minimumCallDurationForNotifying() const;
  // Whether no call of this application is to be detected.
  bool isDisabled(const std::string& bundleIdentifier) const;

 private:
  Process& process_;
  std::set<std::string> builtInDisabled_;
};

}  // namespace kestro
