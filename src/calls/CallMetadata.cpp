#include "calls/CallMetadata.h"

#include <fmt/format.h>

#include "calls/CallSettings.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"

namespace kestro {
namespace {

std::string optionalDescription(const std::optional<std::string>& text) {
  return text ? fmt::format("Optional(\"{}\")", *text) : "nil";
}

}  // namespace

std::optional<std::string> CallMetadata::effectiveServiceName(Process& process) const {
  const auto& settings = process.shared<CallSettings>();
  const bool isWeak = !audioInAndOutAssertionsHaveBeenRecordedSeparately;
  if (isWeak && settings.alwaysRequiresSeparateAudioAssertions) return std::nullopt;
  if (serviceName) return serviceName;
  if (isWeak && settings.requiresSeparateAudioAssertionsIfServiceNameUnknown) return std::nullopt;
  return appName;
}

std::optional<std::string> CallMetadata::timeEntryTitle(Process& process) const {
  const auto service = effectiveServiceName(process);
  if (!service) return std::nullopt;
  const bool hasTitle = meetingTitle && !meetingTitle->empty();
  const auto& settings = process.shared<CallSettings>();
  if (hasTitle && !settings.includeServiceNamePrefixInCallTaskTitle.value()) return meetingTitle;
  const std::string call = localizedFormat(process, "%@ call", *service);
  return hasTitle ? call + ": " + *meetingTitle : call;
}

void CallMetadata::merge(const CallMetadata& newer) {
  if (newer.serviceName) serviceName = newer.serviceName;
  if (newer.appName) appName = newer.appName;
  if (newer.meetingTitle) meetingTitle = newer.meetingTitle;
  audioInAndOutAssertionsHaveBeenRecordedSeparately |=
      newer.audioInAndOutAssertionsHaveBeenRecordedSeparately;
}

std::string ApplicationAndMetadata::description() const {
  return fmt::format(
      "ApplicationAndMetadata(bundleIdentifier: \"{}\", metadata: CallMetadata(serviceName: {}, "
      "appName: {}, meetingTitle: {}, audioInAndOutAssertionsHaveBeenRecordedSeparately: {}))",
      bundleIdentifier, optionalDescription(metadata.serviceName),
      optionalDescription(metadata.appName), optionalDescription(metadata.meetingTitle),
      metadata.audioInAndOutAssertionsHaveBeenRecordedSeparately);
}

}  // namespace kestro
