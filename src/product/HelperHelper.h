// Services of the product around the helper's life: part of its user-interface library. Main thread
// only.
#pragma once

#include <string_view>

#include "foundation/Date.h"
#include "foundation/PropertyList.h"

namespace kestro {

class InfoLoggerAccessibilityStatsProvider;
class Process;

// Operations without a comment do nothing in the embedded product.
class HelperHelper {
 public:
  static HelperHelper& sharedInstance(Process& process);
  // Use sharedInstance.
  explicit HelperHelper(Process& process) : process_(process) {}

  // The name under which it is posted that the main application has changed everything: the user's
  // settings are to be read again.
  static constexpr std::string_view fullStateReloadNotification = "HelperHelper.fullStateReload";

  static void activateLogging(Process& process);
  static void applyForcedAppearance(Process& process);
  static void activateRetentionHeartbeat(Process& process);
  static void logEvent(Process& process, std::string_view name, PropertyListDictionary attributes,
                       bool isCritical = false);
  // What has to be safe before another process takes over.
  static void prepareForRelaunch(Process& process);

  // A log line when another helper runs in this session, where the platform lists such processes.
  void searchForOtherRunningHelpersAndMaybeDisplayAWarning();
  void logLaunchStatistics();
  void initializeHelper();
  void maybeCheckForUpdatesAfterLaunch();
  // A log line when accessibility is permitted and has yet shown nothing.
  void checkForAccessibilitySuccess(const InfoLoggerAccessibilityStatsProvider& statistics);
  // Until the next midnight of the user's time zone.
  Seconds secondsUntilTomorrow() const;

 private:
  Process& process_;
};

// Prepares what the first sample and the first menu need.
class PrewarmCoordinator {
 public:
  static void warmUp(Process& process);
};

// The embedded product is updated by the system's packages, and looks for nothing.
class UpdateHandler {
 public:
  static UpdateHandler& sharedInstance(Process& process);
  // Use sharedInstance.
  explicit UpdateHandler(Process& process);
};

// Offers the user's data to assistants; there is none in the embedded product.
class MCPServerHelperBridge {
 public:
  static MCPServerHelperBridge& shared(Process& process);
  // Use shared.
  explicit MCPServerHelperBridge(Process& process) : process_(process) {}
  void startIfAllowed();

 private:
  Process& process_;
};

// Addresses that the helper was asked to open.
class URLHandler {
 public:
  static void handleGetURL(Process& process, std::string_view address);
};

}  // namespace kestro
