#include "scene/SceneTimeEntryEditors.h"

namespace kestro {
namespace {

// What the user left in the fields.
TimeEntryEditorContents edited(TimeEntryEditorContents contents, const EditorStep& step) {
  if (step.title) contents.title = *step.title;
  if (step.start) contents.start = *step.start;
  if (step.end) contents.end = *step.end;
  if (step.project) contents.project = *step.project;
  return contents;
}

}  // namespace

void SceneTimeEntryEditors::present(const TimeEntryEditorContents& contents, TimeEntryEditorAids,
                                    Placement placement, Completion completion) {
  if (transcript_.isActive()) {
    PropertyListDictionary fields{{"header", contents.header},
                                  {"title", contents.title},
                                  {"start", contents.start},
                                  {"end", contents.end}};
    fields.setIfPresent("project", contents.project);
    fields.set("obtainFocus", placement.obtainFocus);
    fields.set("center", placement.center);
    transcript_.record("editor", std::move(fields));
  }
  open_.push_back({contents, std::move(completion)});
}

void SceneTimeEntryEditors::end(const EditorStep& step) {
  if (open_.empty()) return;
  const Editor editor = std::move(open_.back());
  open_.pop_back();
  editor.completion(step.isSaved ? std::optional(edited(editor.contents, step)) : std::nullopt);
}

}  // namespace kestro
