#include "platform/transcript/EventText.h"

#include <fmt/format.h>

#include <array>

namespace kestro {
namespace {

std::string text(const PropertyListDictionary& fields, std::string_view key) {
  const PropertyList* value = fields.find(key);
  const auto* found = value ? value->get<std::string>() : nullptr;
  return found ? *found : "";
}

// In whole minutes; empty when a date is missing.
std::string minutes(const PropertyListDictionary& fields, std::string_view from,
                    std::string_view until) {
  const PropertyList* start = fields.find(from);
  const PropertyList* end = fields.find(until);
  if (!start || !end || !start->get<Date>() || !end->get<Date>()) return "";
  const auto duration =
      std::chrono::floor<std::chrono::minutes>(*end->get<Date>() - *start->get<Date>());
  return fmt::format("{} min", duration.count());
}

std::string withTitle(std::string text, const std::string& title) {
  return title.empty() ? text : std::move(text) + ": " + title;
}

std::string callText(const PropertyListDictionary& call) {
  std::string name = text(call, "serviceName");
  if (name.empty()) name = text(call, "appName");
  name = withTitle(std::move(name), text(call, "meetingTitle"));
  if (call.find("started")) return "started  " + name;
  return fmt::format("ended after {}  {}  ({})", minutes(call, "startedAt", "lastSeen"), name,
                     text(call, "action"));
}

std::string notificationText(const PropertyListDictionary& notification) {
  return withTitle(text(notification, "title"), text(notification, "body"));
}

std::string editorText(const PropertyListDictionary& editor) {
  return withTitle(text(editor, "header"), text(editor, "title"));
}

std::string timeEntryText(const PropertyListDictionary& entry) {
  const std::string project = text(entry, "project");
  return fmt::format("{}  {}{}", text(entry, "title"), minutes(entry, "start", "end"),
                     project.empty() ? "" : "  [" + project + "]");
}

std::string supportText(const PropertyListDictionary&) {
  return "a request was opened";
}

struct Row {
  std::string_view kind;
  std::string (*words)(const PropertyListDictionary& fields);
};
constexpr std::array<Row, 5> rows{{{"call", callText},
                                   {"notification", notificationText},
                                   {"editor", editorText},
                                   {"timeEntry", timeEntryText},
                                   {"support", supportText}}};

}  // namespace

std::optional<std::string> eventText(std::string_view kind, const PropertyListDictionary& fields) {
  for (const Row& row : rows) {
    if (row.kind == kind) return row.words(fields);
  }
  return std::nullopt;
}

}  // namespace kestro
