// Editors of a scripted desktop: recorded, and ended by steps. Main thread only.
#pragma once

#include <vector>

#include "platform/TimeEntryEditors.h"
#include "platform/Transcript.h"
#include "scene/SceneStep.h"

namespace kestro {

class SceneTimeEntryEditors final : public TimeEntryEditors {
 public:
  explicit SceneTimeEntryEditors(Transcript& transcript) : transcript_(transcript) {}

  void present(const TimeEntryEditorContents& contents, TimeEntryEditorAids aids,
               Placement placement, Completion completion) override;

  // Ends the editor that was opened last; nothing when there is none. What is saved is what a
  // window has let through: it was checked there.
  void end(const EditorStep& step);
  void beginNextLife() { open_.clear(); }

 private:
  struct Editor {
    TimeEntryEditorContents contents;
    Completion completion;
  };

  Transcript& transcript_;
  std::vector<Editor> open_;
};

}  // namespace kestro
