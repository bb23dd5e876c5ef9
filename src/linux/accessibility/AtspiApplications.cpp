#include "linux/accessibility/AtspiApplications.h"

#include <set>

#include "linux/accessibility/AtspiMessages.h"
#include "linux/process/ProcessInformation.h"

namespace kestro {
namespace {

const AtspiObject registry{"org.a11y.atspi.Registry", atspiRootPath};
const AtspiObject busDaemon{"org.freedesktop.DBus", "/org/freedesktop/DBus"};

}  // namespace

void AtspiApplications::startGeneration() {
  if (connectionNumber_ != connection_.connectionNumber()) {
    roots_.clear();
    processes_.clear();
    toolkits_.clear();
    connectionNumber_ = connection_.connectionNumber();
  }
  const std::uint64_t generation = generation_.current();
  if (checkedIn_ == generation) return;
  checkedIn_ = generation;
  hasListedRoots_ = false;
  stopped_.clear();
}

AccessibilityResult<AtspiObject> AtspiApplications::root(ProcessIdentifier process) {
  if (!connection_.isConnected()) return AccessibilityError::cannotComplete;
  startGeneration();
  auto stopped = stopped_.find(process);
  if (stopped == stopped_.end()) stopped = stopped_.emplace(process, isStopped(process)).first;
  // A stopped process answers nothing: not asking saves the whole timeout.
  if (stopped->second) return AccessibilityError::cannotComplete;
  if (!roots_.contains(process) && !hasListedRoots_) findRoots();
  const auto found = roots_.find(process);
  if (found == roots_.end()) return AccessibilityError::cannotComplete;
  return found->second;
}

bool AtspiApplications::forgetIfGone(ProcessIdentifier process) {
  const auto known = roots_.find(process);
  if (known == roots_.end() || connection_.isSilenced(known->second.busName)) return false;
  roots_.erase(known);
  hasListedRoots_ = false;
  return true;
}

void AtspiApplications::findRoots() {
  hasListedRoots_ = true;
  const auto roots = reader_.children(registry);
  if (!roots.value) return;
  readProcesses(*roots.value);
  roots_.clear();
  for (const AtspiObject& root : *roots.value) {
    const auto process = processes_.find(root.busName);
    if (process != processes_.end()) roots_.emplace(process->second, root);
  }
}

// A unique name belongs to one connection for ever, so its process is asked for once.
void AtspiApplications::readProcesses(const std::vector<AtspiObject>& roots) {
  std::map<std::string, ProcessIdentifier> known;
  std::vector<std::string> names;
  std::vector<MessagePointer> requests;
  for (const AtspiObject& root : roots) {
    const auto found = processes_.find(root.busName);
    if (found != processes_.end()) {
      known.insert(*found);
      continue;
    }
    auto request =
        connection_.request(busDaemon, "org.freedesktop.DBus", "GetConnectionUnixProcessID");
    if (request) sd_bus_message_append(request.get(), "s", root.busName.c_str());
    names.push_back(root.busName);
    requests.push_back(std::move(request));
  }
  const auto replies = connection_.callTogether(requests);
  for (std::size_t index = 0; index < names.size(); ++index) {
    const auto process = processOf(replies[index]);
    if (process.value) known[names[index]] = *process.value;
  }
  processes_ = std::move(known);
  forgetAllExcept(roots);
}

void AtspiApplications::forgetAllExcept(const std::vector<AtspiObject>& roots) {
  std::set<std::string> names;
  for (const AtspiObject& root : roots)
    names.insert(root.busName);
  std::erase_if(toolkits_, [&](const auto& known) { return !names.contains(known.first); });
  connection_.forgetSilencesExcept(names);
}

AtspiToolkit AtspiApplications::toolkit(const AtspiObject& object) {
  const auto known = toolkits_.find(object.busName);
  if (known != toolkits_.end()) return known->second;
  const auto toolkit = readToolkit({object.busName, atspiRootPath});
  if (toolkit) toolkits_[object.busName] = *toolkit;
  return toolkit.value_or(AtspiToolkit::other);
}

std::optional<AtspiToolkit> AtspiApplications::readToolkit(const AtspiObject& root) {
  const auto name = reader_.toolkitName(root);
  if (!name.value) return std::nullopt;
  if (*name.value == "Chromium") return AtspiToolkit::chromium;
  if (*name.value != "GTK" && *name.value != "gtk") return AtspiToolkit::other;
  const auto version = reader_.toolkitVersion(root);
  if (!version.value) return std::nullopt;
  return version.value->starts_with("4.") ? AtspiToolkit::gtk4 : AtspiToolkit::other;
}

}  // namespace kestro
