#include "transcript/EventText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <vector>

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

// The rows that can be seen, from top to bottom.
std::string menuText(const PropertyListDictionary& menu) {
  const PropertyList* rows = menu.find("rows");
  const auto* list = rows ? rows->get<PropertyListArray>() : nullptr;
  std::vector<std::string> titles;
  for (const PropertyList& row : list ? *list : PropertyListArray()) {
    const auto* fields = row.get<PropertyListDictionary>();
    const bool isShown = fields && !fields->find("hidden") && !fields->find("separator");
    if (isShown) titles.push_back(text(*fields, "title"));
  }
  return fmt::format("{}", fmt::join(titles, " | "));
}

std::string alertText(const PropertyListDictionary& alert) {
  const PropertyList* answer = alert.find("answer");
  const auto* fields = answer ? answer->get<PropertyListDictionary>() : nullptr;
  return fmt::format("{}  → {}", text(alert, "message"), fields ? text(*fields, "button") : "");
}

std::string openText(const PropertyListDictionary& open) {
  return text(open, "bundleIdentifier");
}

std::string logText(const PropertyListDictionary& log) {
  return text(log, "text");
}

struct Row {
  std::string_view kind;
  std::string (*words)(const PropertyListDictionary& fields);
};
constexpr std::array<Row, 9> rows{{{"call", callText},
                                   {"menu", menuText},
                                   {"alert", alertText},
                                   {"open", openText},
                                   {"log", logText},
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
