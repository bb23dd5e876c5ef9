#include "control/TrackedDay.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "control/Terminal.h"

namespace kestro {
namespace {

constexpr int longestWait = 1000;  // milliseconds, for a helper that writes
constexpr std::size_t widestName = 40;

std::vector<TrackedApplication> readApplications(SQLite::Database& database, TrackedSpan span) {
  SQLite::Statement query(
      database,
      "SELECT coalesce(application_name, application_bundle_identifier, '(unknown)') AS name,"
      " coalesce(application_bundle_identifier, ''), total(min(end, ?2) - max(start, ?1)), count(*)"
      " FROM activities WHERE end > ?1 AND start < ?2 GROUP BY name ORDER BY 3 DESC, name");
  query.bind(1, span.from);
  query.bind(2, span.to);
  std::vector<TrackedApplication> applications;
  while (query.executeStep()) {
    applications.push_back({query.getColumn(0).getString(), query.getColumn(1).getString(),
                            query.getColumn(2).getDouble(), query.getColumn(3).getInt64()});
  }
  return applications;
}

std::vector<TrackedProject> readProjects(SQLite::Database& database, TrackedSpan span) {
  if (!database.tableExists("time_entries")) return {};
  SQLite::Statement query(
      database,
      "SELECT projects.name, total(min(end, ?2) - max(start, ?1)) FROM time_entries"
      " LEFT JOIN projects ON projects.id = project_id WHERE end > ?1 AND start < ?2"
      " GROUP BY project_id ORDER BY 2 DESC, 1");
  query.bind(1, span.from);
  query.bind(2, span.to);
  std::vector<TrackedProject> projects;
  while (query.executeStep()) {
    const SQLite::Column name = query.getColumn(0);
    projects.push_back({name.isNull() ? std::nullopt : std::optional(name.getString()),
                        query.getColumn(1).getDouble()});
  }
  return projects;
}

std::string nameOf(const TrackedProject& project) {
  return project.name ? printable(*project.name) : "(no project)";
}

template <class List, class Name>
std::size_t widthOf(const List& list, std::string_view heading, Name name) {
  std::size_t width = heading.size();
  for (const auto& member : list)
    width = std::max(width, fmt::formatted_size("{}", name(member)));
  return std::min(width, widestName);
}

// The bytes may be cut inside a character: JSON shows what can be shown.
std::string dumped(const nlohmann::ordered_json& json) {
  return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

TrackedDay readTrackedDay(const std::filesystem::path& file, TrackedSpan span) {
  if (!std::filesystem::is_regular_file(file)) {
    throw std::runtime_error("there is no database yet: " + file.string());
  }
  SQLite::Database database(file.string(), SQLite::OPEN_READONLY, longestWait);
  if (!database.tableExists("activities")) {
    throw std::runtime_error("this is no database of activities: " + file.string());
  }
  TrackedDay day{0, readApplications(database, span), readProjects(database, span)};
  for (const TrackedApplication& application : day.applications)
    day.seconds += application.seconds;
  return day;
}

std::string trackedDayText(const TrackedDay& day) {
  std::string text = fmt::format("Tracked time: {}\n", clockDuration(day.seconds));
  if (!day.applications.empty()) {
    const auto name = [](const TrackedApplication& application) {
      return printable(application.name);
    };
    const std::size_t width = widthOf(day.applications, "Application", name);
    text += fmt::format("\n{:<{}}  {:>10}  {:>6}  {:>10}\n", "Application", width, "Time", "Share",
                        "Activities");
    for (const TrackedApplication& application : day.applications) {
      const double share = day.seconds > 0 ? 100 * application.seconds / day.seconds : 0;
      text += fmt::format("{:<{}}  {:>10}  {:>5.1f}%  {:>10}\n", name(application), width,
                          clockDuration(application.seconds), share, application.activities);
    }
  }
  if (!day.projects.empty()) {
    const std::size_t width = widthOf(day.projects, "Project", nameOf);
    text += fmt::format("\n{:<{}}  {:>10}\n", "Project", width, "Recorded");
    for (const TrackedProject& project : day.projects) {
      text +=
          fmt::format("{:<{}}  {:>10}\n", nameOf(project), width, clockDuration(project.seconds));
    }
  }
  return text;
}

std::string trackedDayJson(const TrackedDay& day) {
  nlohmann::ordered_json json;
  json["trackedSeconds"] = day.seconds;
  json["applications"] = nlohmann::ordered_json::array();
  for (const TrackedApplication& application : day.applications) {
    json["applications"].push_back({{"name", application.name},
                                    {"identifier", application.identifier},
                                    {"seconds", application.seconds},
                                    {"activities", application.activities}});
  }
  json["projects"] = nlohmann::ordered_json::array();
  for (const TrackedProject& project : day.projects) {
    nlohmann::ordered_json fields{{"name", nullptr}, {"seconds", project.seconds}};
    if (project.name) fields["name"] = *project.name;
    json["projects"].push_back(std::move(fields));
  }
  return dumped(json);
}

}  // namespace kestro
