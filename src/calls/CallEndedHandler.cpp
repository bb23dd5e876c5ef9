#include "calls/CallEndedHandler.h"

#include "calls/CallEvents.h"
#include "calls/CallNotificationContents.h"
#include "calls/CallSettings.h"
#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "product/ActivityWriter.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

DatabaseWrapper* openDatabase(Process& process) {
  DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process);
  return database && database->isOpen() ? database : nullptr;
}

Date withoutFraction(Date date) {
  return std::chrono::floor<std::chrono::seconds>(date);
}

TaskActivityDescriptor descriptorOf(Process& process, const CallProperties& call) {
  return {withoutFraction(call.startedAt), withoutFraction(call.lastSeen),
          call.metadata.timeEntryTitle(process)};
}

std::string titleOf(Process& process, const std::string& service, const CallProperties& call) {
  const std::string title =
      localizedFormat(process, "%@ call has ended (%@)", {service, formattedCallDuration(call)});
  const auto& meeting = call.metadata.meetingTitle;
  return meeting && !meeting->empty() ? title + ": " + *meeting : title;
}

}  // namespace

std::optional<std::string> CallEndedHandler::handleEndedCall(const std::string& bundleIdentifier,
                                                             const CallProperties& call) {
  DatabaseWrapper* database = openDatabase(process_);
  const ActivityWriter* writer = database ? database->activityWriter() : nullptr;
  if (!writer || writer->ongoingTaskActivityManager().hasRunningActivity()) return "tooShort";

  auto& preferences = process_.shared<HelperPreferences>();
  const bool isSavedAtOnce =
      preferences.getBool("RunningCallDetector_immediatelySaveTimeEntriesForCalls").value_or(false);
  std::optional<std::string> action;
  if (isSavedAtOnce) {
    action = saveAtOnce(call);
  } else {
    switch (callNotificationMode(process_)) {
      case CallNotificationMode::none:
        action = "none";
        break;
      case CallNotificationMode::popover:
        openEditor(bundleIdentifier, call);
        action = "popover";
        break;
      case CallNotificationMode::notification:
        askForPermission(bundleIdentifier, call);
        break;
    }
  }
  preferences.set(process_.platform().clock.now(), "RunningCallDetector_lastDetectedCallDate");
  return action;
}

std::string CallEndedHandler::saveAtOnce(const CallProperties& call) {
  DatabaseWrapper& database = *DatabaseWrapper::sharedInstance(process_);
  std::optional<TaskActivity> entry;
  const bool isWritten = database.mutateOrPresentError([&](SQLite::Database& mutator) {
    entry = descriptorOf(process_, call).createTaskActivity(process_, mutator, true);
  });
  if (!isWritten) entry.reset();
  if (!isWritten) {
    database.mutateAsynchronouslyOrPresentError(
        [&process = process_, descriptor = descriptorOf(process_, call)](
            SQLite::Database& mutator) { descriptor.createTaskActivity(process, mutator, true); });
  }
  if (!entry || callNotificationMode(process_) == CallNotificationMode::none) return "save";
  if (const ActivityWriter* writer = database.activityWriter()) {
    writer->ongoingTaskActivityManager().editTaskActivity(*entry, /*center=*/false);
  }
  return "saveAndEdit";
}

void CallEndedHandler::askForPermission(const std::string& bundleIdentifier,
                                        const CallProperties& call) {
  UserNotificationCenter::sharedInstance(process_).withNotificationPermission(
      [this, bundleIdentifier, call](bool isAllowed) {
        logCallEndOfUnknownApplication(
            process_, bundleIdentifier, call.metadata,
            isAllowed ? "notification" : "popover_notificationWasDenied");
        if (isAllowed) {
          postNotification(bundleIdentifier, call);
        } else {
          openEditor(bundleIdentifier, call);
        }
      });
}

void CallEndedHandler::postNotification(const std::string& bundleIdentifier,
                                        const CallProperties& call) {
  const auto service = call.metadata.effectiveServiceName(process_);
  if (!service) return;
  logCallEndedNotification(process_, bundleIdentifier, call);
  UserNotificationCenter::sharedInstance(process_).deliver(
      {titleOf(process_, *service, call),
       localizedString(process_, "Click here to record time for this call."),
       process_.shared<HelperPreferences>().playSoundWhenMeetingDetected(), categoryIdentifier(),
       callNotificationUserInfo(bundleIdentifier, call)});
}

void CallEndedHandler::openEditor(const std::string& bundleIdentifier, const CallProperties& call) {
  DatabaseWrapper* database = openDatabase(process_);
  if (!call.metadata.timeEntryTitle(process_) || !database) return;
  logTimeEntryStarted(process_, bundleIdentifier, call);

  TaskActivityDescriptor descriptor = descriptorOf(process_, call);
  descriptor.provenance = bundleIdentifier;
  const auto project = TaskActivitySuggestionRanker(process_, database->db())
                           .suggestProjectBasedOnProvenanceMetadata(descriptor);
  if (project) descriptor.project = project->name;
  AddOrEditTaskActivityController editor(descriptor);
  editor.setHeaderLabel(localizedString(process_, "Record Meeting Details"));
  editor.setSaveHandler(
      [&process = process_, bundleIdentifier, call](const TaskActivityDescriptor& saved) {
        DatabaseWrapper* wrapper = DatabaseWrapper::sharedInstance(process);
        if (!wrapper) return;
        wrapper->mutateAsynchronouslyOrPresentError([&process, saved](SQLite::Database& mutator) {
          saved.createTaskActivity(process, mutator, true);
        });
        logTimeEntrySaved(process, bundleIdentifier, call);
      });
  editor.presentEditorInPopoverSubstituteWindow(process_, /*obtainFocus=*/true, /*center=*/false);
}

}  // namespace kestro
