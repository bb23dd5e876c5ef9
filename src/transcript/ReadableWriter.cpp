#include "transcript/ReadableWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <vector>

#include "foundation/PropertyListJson.h"
#include "transcript/EventText.h"
#include "transcript/TerminalText.h"

namespace kestro {
namespace {

constexpr std::size_t longestSubject = 22;
constexpr std::size_t longestText = 110;

// Kinds that would drown the rest: calls into the product's libraries, measurements, looks.
constexpr std::array<std::string_view, 4> quietKinds{"product", "analytics", "statistics",
                                                     "statusItem"};

std::optional<std::string> textField(const PropertyListDictionary& fields, std::string_view key) {
  const PropertyList* value = fields.find(key);
  const auto* text = value ? value->get<std::string>() : nullptr;
  return text && !text->empty() ? std::optional(*text) : std::nullopt;
}

bool flagField(const PropertyListDictionary& fields, std::string_view key) {
  const PropertyList* value = fields.find(key);
  const bool* flag = value ? value->get<bool>() : nullptr;
  return flag && *flag;
}

std::string applicationName(const PropertyListDictionary& activity) {
  if (auto name = textField(activity, "application")) return *name;
  if (auto identifier = textField(activity, "applicationBundleIdentifier")) return *identifier;
  const PropertyList* process = activity.find("applicationProcessIdentifier");
  const auto* number = process ? process->get<std::int64_t>() : nullptr;
  return number ? fmt::format("process {}", *number) : "(unknown application)";
}

// "General › Design", most general first.
std::optional<std::string> contextText(const PropertyListDictionary& activity) {
  const PropertyList* value = activity.find("contextPath");
  const auto* members = value ? value->get<PropertyListArray>() : nullptr;
  if (!members) return std::nullopt;
  std::vector<std::string> texts;
  for (const PropertyList& member : *members) {
    if (const auto* text = member.get<std::string>()) texts.push_back(*text);
  }
  if (texts.empty()) return std::nullopt;
  return fmt::format("{}", fmt::join(texts, " › "));
}

std::string flagsText(const PropertyListDictionary& activity) {
  std::vector<std::string_view> flags;
  if (flagField(activity, "isFullscreen")) flags.emplace_back("full screen");
  if (flagField(activity, "isShowingSavePanel")) flags.emplace_back("save panel");
  if (flagField(activity, "isPrivateBrowsing")) flags.emplace_back("private");
  return flags.empty() ? "" : fmt::format("  [{}]", fmt::join(flags, ", "));
}

std::string activityText(const PropertyListDictionary& activity) {
  const auto title = textField(activity, "windowTitle");
  std::vector<std::string> parts;
  if (title) parts.push_back(terminalText(*title, longestText));
  if (auto document = textField(activity, "documentTitle"); document && document != title) {
    parts.push_back(terminalText(*document, longestText));
  }
  if (auto path = textField(activity, "documentPath")) {
    parts.push_back(terminalText(*path, longestText));
  }
  if (auto context = contextText(activity)) parts.push_back(terminalText(*context, longestText));
  return fmt::format("{}{}", fmt::join(parts, "  ·  "), flagsText(activity));
}

// "key: value" pairs; a text stands without quotes.
std::string fieldsText(const PropertyListDictionary& fields) {
  std::vector<std::string> parts;
  for (const PropertyListMember& field : fields) {
    const auto* text = field.value.get<std::string>();
    const std::string value = text ? *text : compactJson(propertyListJson(field.value));
    parts.push_back(fmt::format("{}: {}", terminalText(field.key, longestSubject),
                                terminalText(value, longestText)));
  }
  return fmt::format("{}", fmt::join(parts, ", "));
}

std::string clockText(Date date, const TimeZone& timeZone) {
  const auto local = date + timeZone.offset(date);
  const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::seconds>(
      local - std::chrono::floor<std::chrono::days>(local)));
  return fmt::format("{:02}:{:02}:{:02}", time.hours().count(), time.minutes().count(),
                     time.seconds().count());
}

std::string trackingText(const PropertyListDictionary& tracking, const TimeZone& timeZone) {
  if (flagField(tracking, "on")) return "on";
  const PropertyList* resumes = tracking.find("resumesAt");
  const Date* date = resumes ? resumes->get<Date>() : nullptr;
  return date ? "paused until " + clockText(*date, timeZone) : "paused";
}

}  // namespace

void ReadableWriter::write(Seconds time, std::string_view kind,
                           const PropertyListDictionary& fields) {
  if (kind == "activity") return writeActivity(time, fields);
  if (kind == "noActivity") return writeActivity(time, {});
  if (std::ranges::find(quietKinds, kind) != quietKinds.end()) return;
  if (kind == "print") return writePrinted(fields);
  if (kind == "tracking") return writeLine(time, "  tracking", trackingText(fields, timeZone_));
  const auto words = eventText(kind, fields);
  writeLine(time, fmt::format("  {}", kind),
            words ? terminalText(*words, longestText) : fieldsText(fields));
}

void ReadableWriter::writeActivity(Seconds time, PropertyListDictionary fields) {
  // What a sample cost, and which handles it saw, is no change of activity.
  fields.remove("requests");
  fields.remove("budgetUsedUp");
  fields.remove("accessibilityWindows");
  if (shownActivity_ == fields) return;
  if (fields.empty()) {
    writeLine(time, "(nothing to track)", "");
  } else {
    writeLine(time, applicationName(fields), activityText(fields));
  }
  shownActivity_ = std::move(fields);
}

// Stands for standard output, so it is whole and has no time.
void ReadableWriter::writePrinted(const PropertyListDictionary& fields) {
  const auto text = textField(fields, "text").value_or("");
  stream_ << terminalText(text, std::string::npos) << std::endl;
}

void ReadableWriter::writeLine(Seconds time, std::string_view subject, std::string_view text) {
  const Date date = start_ + std::chrono::duration_cast<Date::duration>(time);
  std::string line = fmt::format("{}  {:<{}}  {}", clockText(date, timeZone_),
                                 terminalText(subject, longestSubject), longestSubject + 1, text);
  line.erase(line.find_last_not_of(' ') + 1);
  stream_ << line << std::endl;
}

}  // namespace kestro
