#include "linux/shell/PendingNotifications.h"

#include <algorithm>
#include <utility>

#include "linux/storage/PropertyListFile.h"
#include "linux/storage/WholeFile.h"

namespace kestro {
namespace {

std::string textMember(const PropertyListDictionary& dictionary, std::string_view key) {
  const PropertyList* value = dictionary.find(key);
  const auto* text = value ? value->get<std::string>() : nullptr;
  return text ? *text : "";
}

template <class Value>
const Value* member(const PropertyListDictionary& dictionary, std::string_view key) {
  const PropertyList* value = dictionary.find(key);
  return value ? value->get<Value>() : nullptr;
}

PropertyList encoded(const PendingNotification& entry) {
  PropertyListDictionary fields;
  fields.set("number", static_cast<std::int64_t>(entry.number));
  fields.set("title", entry.notification.title);
  fields.set("body", entry.notification.body);
  fields.set("sound", entry.notification.playsDefaultSound);
  fields.set("category", entry.notification.categoryIdentifier);
  fields.set("userInfo", entry.notification.userInfo);
  return fields;
}

std::optional<PendingNotification> decoded(const PropertyList& value) {
  const auto* fields = value.get<PropertyListDictionary>();
  const auto* number = fields ? member<std::int64_t>(*fields, "number") : nullptr;
  const auto* userInfo = fields ? member<PropertyListDictionary>(*fields, "userInfo") : nullptr;
  if (!number || *number < 0 || *number > UINT32_MAX || !userInfo) return std::nullopt;
  const bool* playsSound = member<bool>(*fields, "sound");
  return PendingNotification{
      static_cast<std::uint32_t>(*number),
      {textMember(*fields, "title"), textMember(*fields, "body"), playsSound && *playsSound,
       textMember(*fields, "category"), *userInfo},
      /*isToBeShownAnew=*/true};
}

}  // namespace

PendingNotifications::PendingNotifications(std::filesystem::path file, SystemLog& log)
    : file_(std::move(file)), log_(log) {
  const auto text = readWholeFile(file_);
  const auto stored = text ? propertyListFromText(*text) : std::nullopt;
  if (!stored) return;
  server_ = {textMember(*stored, "bus"), textMember(*stored, "server")};
  const auto* list = member<PropertyListArray>(*stored, "notifications");
  if (!list) return;
  for (const PropertyList& value : *list) {
    if (auto entry = decoded(value)) entries_.push_back(std::move(*entry));
  }
}

PendingNotification* PendingNotifications::find(std::uint32_t number) {
  const auto found = std::ranges::find(entries_, number, &PendingNotification::number);
  return found == entries_.end() ? nullptr : &*found;
}

std::optional<PendingNotification> PendingNotifications::take(std::uint32_t number) {
  const auto found = std::ranges::find(entries_, number, &PendingNotification::number);
  if (found == entries_.end()) return std::nullopt;
  PendingNotification entry = std::move(*found);
  entries_.erase(found);
  return entry;
}

void PendingNotifications::save() {
  PropertyListArray list;
  for (const PendingNotification& entry : entries_)
    list.push_back(encoded(entry));
  const std::string text = propertyListAsXml(
      {{"bus", server_.bus}, {"server", server_.name}, {"notifications", std::move(list)}});
  if (replaceFile(file_, text) || std::exchange(hasReportedFailure_, true)) return;
  log_.write("notifications cannot be remembered over a restart: their file cannot be written");
}

}  // namespace kestro
