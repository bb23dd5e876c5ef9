#include "linux/shell/LinuxTimeEntryEditors.h"

#include "foundation/Iso8601.h"

namespace kestro {

struct LinuxTimeEntryEditors::Window {
  TimeEntryEditorContents contents;
  TimeEntryEditorAids aids;
  Completion completion;
  std::unique_ptr<DialogProcess> dialog;
};

namespace {

nlohmann::json requestOf(const TimeEntryEditorContents& contents, const TimeEntryEditorAids& aids,
                         bool center) {
  nlohmann::json request{{"kind", "editor"},
                         {"header", contents.header},
                         {"title", contents.title},
                         {"start", iso8601(contents.start)},
                         {"end", iso8601(contents.end)},
                         {"hasEnd", aids.hasEnd},
                         {"center", center},
                         {"projects", aids.projects},
                         {"titles", aids.titles}};
  if (contents.project) request["project"] = *contents.project;
  return request;
}

std::optional<std::string> textIn(const nlohmann::json& fields, const char* key) {
  const auto found = fields.find(key);
  if (found == fields.end() || !found->is_string()) return std::nullopt;
  return found->get<std::string>();
}

// What the user left in the window; absent when the window says something else.
std::optional<TimeEntryEditorContents> contentsIn(const nlohmann::json& fields,
                                                  TimeEntryEditorContents contents, bool hasEnd) {
  const auto start = textIn(fields, "start");
  const auto end = textIn(fields, "end");
  const auto startDate = start ? parseIso8601(*start) : std::nullopt;
  const auto endDate = end ? parseIso8601(*end) : std::nullopt;
  if (!startDate || (hasEnd && !endDate)) return std::nullopt;
  contents.title = textIn(fields, "title").value_or("");
  contents.start = *startDate;
  if (hasEnd) contents.end = *endDate;
  contents.project = textIn(fields, "project");
  return contents;
}

}  // namespace

void LinuxTimeEntryEditors::present(const TimeEntryEditorContents& contents,
                                    TimeEntryEditorAids aids, Placement placement,
                                    Completion completion) {
  const nlohmann::json request = requestOf(contents, aids, placement.center);
  auto window =
      std::make_shared<Window>(Window{contents, std::move(aids), std::move(completion), nullptr});
  windows_.push_back(window);
  const std::weak_ptr<Window> known = window;
  window->dialog = std::make_unique<DialogProcess>(
      settings_, request,
      [this, known](const nlohmann::json& message) {
        if (const auto speaking = known.lock()) take(speaking, message);
      },
      [this, known] {
        if (const auto failing = known.lock()) end(failing, std::nullopt);
      });
}

void LinuxTimeEntryEditors::take(const std::shared_ptr<Window>& window,
                                 const nlohmann::json& message) {
  if (message.contains("cancel")) return end(window, std::nullopt);
  const auto save = message.find("save");
  if (save == message.end() || !save->is_object()) return;
  const auto contents = contentsIn(*save, window->contents, window->aids.hasEnd);
  if (!contents) return end(window, std::nullopt);
  const auto refusal =
      window->aids.check ? window->aids.check(*contents) : std::optional<std::string>();
  if (refusal) return window->dialog->send({{"refuse", *refusal}});
  window->dialog->send({{"accepted", true}});
  end(window, contents);
}

void LinuxTimeEntryEditors::end(const std::shared_ptr<Window>& window,
                                std::optional<TimeEntryEditorContents> saved) {
  windows_.remove(window);
  const Completion completion = std::move(window->completion);
  if (completion) completion(std::move(saved));
}

}  // namespace kestro
