#include "platform/Process.h"
#include "platform/TimeEntryEditors.h"
#include "product/TimeEntries.h"
#include "product/embedded/EditorAids.h"
#include "product/embedded/NonEmptyText.h"

namespace kestro {

void AddOrEditTaskActivityController::presentEditorInPopoverSubstituteWindow(Process& process,
                                                                             bool obtainFocus,
                                                                             bool center) const {
  const TimeEntryEditorContents contents{headerLabel_, descriptor_.title.value_or(""),
                                         descriptor_.start, descriptor_.end, descriptor_.project};
  process.platform().timeEntryEditors.present(
      contents, editorAids(process, EditedThing::timeEntry), {obtainFocus, center},
      [descriptor = descriptor_,
       handler = saveHandler_](const std::optional<TimeEntryEditorContents>& saved) {
        if (!saved || !handler) return;
        TaskActivityDescriptor edited = descriptor;
        edited.title = nonEmpty(saved->title);
        edited.start = saved->start;
        edited.end = saved->end;
        edited.project = saved->project;
        handler(edited);
      });
}

}  // namespace kestro
