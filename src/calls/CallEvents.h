// The analytics events of call detection: their names, attributes and flags, in one place. A value
// that is not known is "(nil)".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "calls/CallMetadata.h"
#include "foundation/PropertyList.h"

namespace kestro {

class Process;

void logMeetingAssertionDetected(Process& process, const std::string& bundleIdentifier,
                                 const std::optional<std::string>& applicationName);
void logMultipleParallelAssertions(Process& process,
                                   const std::vector<std::string>& sortedBundleIdentifiers);
// With a further event for a call whose service is not known.
void logCallStart(Process& process, const std::string& bundleIdentifier,
                  const CallMetadata& metadata);
void logCallEnd(Process& process, const std::string& bundleIdentifier, const CallProperties& call);
// What was done about the end of a call. Nothing when its service is known.
void logCallEndOfUnknownApplication(Process& process, const std::string& bundleIdentifier,
                                    const CallMetadata& metadata, const std::string& actionTaken);

// The notification of an ended call and the editor for it.
void logCallEndedNotification(Process& process, const std::string& bundleIdentifier,
                              const CallProperties& call);
void logTimeEntryStarted(Process& process, const std::string& bundleIdentifier,
                         const CallProperties& call);
void logTimeEntrySaved(Process& process, const std::string& bundleIdentifier,
                       const CallProperties& call);
void logNotificationResponse(Process& process, const std::string& action);
void logDoNotAskAgainForThisApp(Process& process, const std::string& bundleIdentifier,
                                const std::optional<CallProperties>& call);
void logDoNotAskAgainForUnknownApp(Process& process, const std::string& userInfoKeys);

// For the transcript: a call has started, or ended with this action.
void recordCallStart(Process& process, const std::string& bundleIdentifier,
                     const CallProperties& call);
void recordCallEnd(Process& process, const std::string& bundleIdentifier,
                   const CallProperties& call, const std::string& action);

// As a person reads it: "12 min".
std::string formattedCallDuration(const CallProperties& call);
// The text, or what stands for one that is not known.
std::string orNil(const std::optional<std::string>& text);

}  // namespace kestro
