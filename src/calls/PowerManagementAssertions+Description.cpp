// The printable forms of a snapshot and its parts.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "calls/PowerManagementAssertions.h"
#include "foundation/DateDescription.h"

namespace kestro {
namespace {

// "label: value" parts; those without a value are left out.
class Parts {
 public:
  void add(std::string_view label, const std::optional<std::string>& value) {
    if (value) parts_.push_back(fmt::format("{}: {}", label, *value));
  }
  std::string in(std::string_view type) const {
    return fmt::format("{}({})", type, fmt::join(parts_, ", "));
  }

 private:
  std::vector<std::string> parts_;
};

// As the designed platform's language prints a set; in ascending order, so that it is always the
// same.
std::string setDescription(const std::set<std::string>& texts) {
  std::vector<std::string> quoted;
  quoted.reserve(texts.size());
  for (const std::string& text : texts)
    quoted.push_back(fmt::format("\"{}\"", text));
  return fmt::format("[{}]", fmt::join(quoted, ", "));
}

std::string applicationDescription(const RunningApplication& application) {
  return fmt::format("<NSRunningApplication: ({} - {})>",
                     application.bundleIdentifier.value_or("(null)"),
                     application.processIdentifier);
}

template <class List>
std::string lines(const List& list) {
  std::vector<std::string> texts;
  texts.reserve(list.size());
  for (const auto& member : list)
    texts.push_back("\t\t" + member.description());
  return fmt::format("{}", fmt::join(texts, "\n"));
}

}  // namespace

std::string PowerManagementAssertions::Assertion::description() const {
  Parts parts;
  parts.add("pid", std::to_string(pid));
  parts.add("processName", processName);
  parts.add("type", type);
  parts.add("name", name);
  if (startedAt) parts.add("startedAt", dateDescription(*startedAt));
  if (resourcesUsed) parts.add("resourcesUsed", setDescription(*resourcesUsed));
  return parts.in("Assertion");
}

std::string PowerManagementAssertions::PIDAndRunningApplication::description() const {
  Parts parts;
  parts.add("pid", std::to_string(pid));
  parts.add("applicationName", applicationName);
  parts.add("bundleIdentifier", bundleIdentifier);
  if (application) parts.add("application", applicationDescription(*application));
  parts.add("audioInAndOutSeparate",
            audioInAndOutAssertionsHaveBeenRecordedSeparately ? "true" : "false");
  return parts.in("PIDAndRunningApplication");
}

std::string PowerManagementAssertions::description() const {
  return fmt::format(
      "PowerManagementAssertions\n"
      "\tassertions:\n{}\n"
      "\tpidsOfAppsWithAudioOutAssertion: [{}]\n"
      "\tpidsOfAppsWithAudioInAssertion: [{}]\n"
      "\tpidsOfAppsWithBothAssertions: [{}]\n"
      "\tappsWithMeetingRelatedPMAssertions:\n{}",
      lines(assertions), fmt::join(pidsOfAppsWithAudioOutAssertion, ", "),
      fmt::join(pidsOfAppsWithAudioInAssertion, ", "),
      fmt::join(pidsOfAppsWithBothAssertions, ", "), lines(appsWithMeetingRelatedPMAssertions));
}

}  // namespace kestro
