#include "app/ScriptingCommands.h"

#include <array>

#include "app/KSHelperAppDelegate.h"

namespace kestro {
namespace {

double number(const PropertyList* value) {
  if (!value) return 0;
  if (const auto* real = value->get<double>()) return *real;
  if (const auto* whole = value->get<std::int64_t>()) return static_cast<double>(*whole);
  return 0;
}

struct Command {
  std::string_view implementingClass;
  void (*perform)(KSHelperAppDelegate& delegate, const PropertyListDictionary& arguments);
};
constexpr std::array<Command, 2> commands{
    {{"KSPauseTrackingCommand", KSPauseTrackingCommand::performDefaultImplementation},
     {"KSResumeTrackingCommand", KSResumeTrackingCommand::performDefaultImplementation}}};

}  // namespace

void KSPauseTrackingCommand::performDefaultImplementation(
    KSHelperAppDelegate& delegate, const PropertyListDictionary& evaluatedArguments) {
  delegate.pauseTrackingForTime(Seconds(number(evaluatedArguments.find("fors"))));
}

void KSResumeTrackingCommand::performDefaultImplementation(KSHelperAppDelegate& delegate,
                                                           const PropertyListDictionary&) {
  delegate.resumeTracking();
}

void performScriptingCommand(KSHelperAppDelegate& delegate, const std::string& implementingClass,
                             const PropertyListDictionary& evaluatedArguments) {
  for (const Command& command : commands) {
    if (command.implementingClass == implementingClass) {
      return command.perform(delegate, evaluatedArguments);
    }
  }
}

}  // namespace kestro
