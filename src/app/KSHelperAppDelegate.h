// The helper's one application delegate: it wires the probe into the product's tracking loop and
// ends it in order. Lives as long as the process life it is made for; main thread only.
#pragma once

#include "platform/Process.h"
#include "product/KestroUI.h"

namespace kestro {

class KSInfoExtractor;

class KSHelperAppDelegate final : public InfoLoggerExtractor {
 public:
  explicit KSHelperAppDelegate(Process& process);
  ~KSHelperAppDelegate() override;
  KSHelperAppDelegate(const KSHelperAppDelegate&) = delete;
  KSHelperAppDelegate& operator=(const KSHelperAppDelegate&) = delete;

  // The start-up sequence. Returns with tracking switched on.
  void awakeFromNib();

  std::optional<Activity> getCurrentActivity() override;
  void callInfoExtractorFor(Activity& activity) override;
  const std::set<std::string>& noAccessibilityApplicationBundleIdentifiers() override;
  const InfoLoggerAccessibilityStatsProvider& accessibilityStatsProvider() override;

 private:
  void applicationShouldTerminate();
  void applicationWillTerminate();

  Process& process_;
  KSInfoExtractor& probe_;
};

}  // namespace kestro
