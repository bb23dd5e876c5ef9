#include "product/embedded/AnalyticsFile.h"

#include <filesystem>
#include <utility>

#include "foundation/PropertyListJson.h"
#include "platform/Clock.h"
#include "platform/Process.h"
#include "platform/SystemLog.h"
#include "platform/Transcript.h"

namespace kestro {

bool AnalyticsFile::open() {
  if (file_.is_open()) return true;
  const auto path = process_.platform().dataDirectory / "Analytics.jsonl";
  file_.open(path, std::ios::app);
  std::error_code ignored;
  using std::filesystem::perms;
  std::filesystem::permissions(path, perms::owner_read | perms::owner_write, ignored);
  return file_.is_open();
}

void AnalyticsFile::record(PropertyListDictionary event) {
  append(event);
  Transcript& transcript = process_.platform().transcript;
  if (transcript.isActive()) transcript.record("analytics", std::move(event));
}

void AnalyticsFile::append(const PropertyListDictionary& event) {
  PropertyListDictionary line{{"time", process_.platform().clock.now()}};
  for (const PropertyListMember& member : event)
    line.set(member.key, member.value);
  if (open() && file_ << compactJson(propertyListJson(line)) << std::endl) return;
  // The disk may have room, or be there, when the next one comes.
  file_.close();
  file_.clear();
  if (std::exchange(hasReportedFailure_, true)) return;
  process_.platform().log.write("Analytics events cannot be written. Later ones are not reported.");
}

}  // namespace kestro
