// The probe's record of its own success with accessibility, for the product's diagnosis. Lives for
// the process and is never stored; only the probe writes it.
#pragma once

#include "product/KestroUI.h"

namespace kestro {

struct AccessibilityStatistics final : public InfoLoggerAccessibilityStatsProvider {
  std::int64_t numberOfTimesWeHaveSeenAlwaysIgnoredApplications() const override {
    return alwaysIgnoredApplications;
  }
  std::optional<std::string> lastAlwaysIgnoredApplication() const override {
    return lastAlwaysIgnored;
  }
  bool hasEnteredAccessibilityBranchAtAll() const override { return enteredBranch; }
  bool hasSuccessfullyFetchedAccessibilityApplication() const override {
    return fetchedApplication;
  }
  bool hasSuccessfullyFetchedAccessibilityWindow() const override { return fetchedWindow; }
  std::optional<Date> lastSuccessfulAccessibilityWindowFetch() const override {
    return lastWindowFetch;
  }
  std::int64_t unsuccessfulWindowFetchesSinceLastSuccessful() const override {
    return windowFetchFailures;
  }
  std::optional<std::string> lastApplicationWithoutWindow() const override {
    return lastWithoutWindow;
  }
  std::int64_t lastWindowFetchError() const override { return windowFetchError; }
  bool hasSuccessfullyUsedAccessibility() const override { return usedAccessibility; }

  std::int64_t alwaysIgnoredApplications = 0;
  std::optional<std::string> lastAlwaysIgnored;
  bool enteredBranch = false;
  bool fetchedApplication = false;
  bool fetchedWindow = false;
  std::optional<Date> lastWindowFetch;
  std::int64_t windowFetchFailures = 0;
  std::optional<std::string> lastWithoutWindow;
  std::int64_t windowFetchError = 1;  // no platform's code: those are 0 or negative
  bool usedAccessibility = false;
};

}  // namespace kestro
