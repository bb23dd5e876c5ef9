#include "linux/accessibility/AtspiMessages.h"

#include <cstring>
#include <limits>

namespace kestro {
namespace {

// An answer is as large as an application likes. No title, path or attribute that anybody uses is
// longer than this, and no sample can look at more objects.
constexpr std::size_t longestAnsweredText = 65'536;  // bytes
constexpr std::size_t longestAttributes = 65'536;    // bytes of one answer
constexpr std::size_t mostObjects = SampleBudget::usualRequests;

// Cut between two characters.
std::string boundedText(const char* text) {
  const std::size_t length = strnlen(text, longestAnsweredText + 1);
  if (length <= longestAnsweredText) return {text, length};
  std::size_t end = longestAnsweredText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    --end;
  return {text, end};
}

bool enterVariant(sd_bus_message* message, const char* contents) {
  return sd_bus_message_enter_container(message, 'v', contents) > 0;
}

AccessibilityResult<std::string> readText(sd_bus_message* message) {
  const char* text = nullptr;
  if (sd_bus_message_read(message, "s", &text) <= 0) return AccessibilityError::failure;
  return boundedText(text);
}

AccessibilityResult<AtspiObject> readObject(sd_bus_message* message) {
  const char* busName = nullptr;
  const char* path = nullptr;
  if (sd_bus_message_read(message, "(so)", &busName, &path) <= 0) {
    return AccessibilityError::failure;
  }
  AtspiObject object{busName, path};
  if (object.isNull()) return AccessibilityError::noValue;
  return object;
}

template <class Number>
AccessibilityResult<Number> readNumberProperty(const AtspiReply& reply, const char* type) {
  if (!reply.message) return reply.error;
  Number number{};
  if (sd_bus_message_read(reply.message.get(), "v", type, &number) <= 0) {
    return AccessibilityError::failure;
  }
  return number;
}

// One relation: its kind and, through `target`, its first object. False at the end of the set.
bool readRelation(sd_bus_message* message, std::uint32_t& kind, AtspiObject& target) {
  if (sd_bus_message_enter_container(message, 'r', "ua(so)") <= 0) return false;
  sd_bus_message_read(message, "u", &kind);
  sd_bus_message_enter_container(message, 'a', "(so)");
  target = {};
  const char* busName = nullptr;
  const char* path = nullptr;
  while (sd_bus_message_read(message, "(so)", &busName, &path) > 0) {
    if (target.isNull()) target = {busName, path};
  }
  sd_bus_message_exit_container(message);
  sd_bus_message_exit_container(message);
  return true;
}

}  // namespace

AccessibilityResult<std::string> textOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  return readText(reply.message.get());
}

AccessibilityResult<std::string> textPropertyOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  if (!enterVariant(reply.message.get(), "s")) return AccessibilityError::failure;
  return readText(reply.message.get());
}

AccessibilityResult<std::int32_t> integerPropertyOf(const AtspiReply& reply) {
  return readNumberProperty<std::int32_t>(reply, "i");
}

AccessibilityResult<double> realPropertyOf(const AtspiReply& reply) {
  return readNumberProperty<double>(reply, "d");
}

AccessibilityResult<AtspiRole> roleOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  std::uint32_t role = 0;
  if (sd_bus_message_read(reply.message.get(), "u", &role) <= 0) {
    return AccessibilityError::failure;
  }
  return static_cast<AtspiRole>(role);
}

AccessibilityResult<AtspiStates> statesOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  sd_bus_message* message = reply.message.get();
  if (sd_bus_message_enter_container(message, 'a', "u") <= 0) return AccessibilityError::failure;
  std::uint32_t low = 0;
  std::uint32_t high = 0;
  if (sd_bus_message_read(message, "u", &low) > 0) sd_bus_message_read(message, "u", &high);
  return AtspiStates(low | (static_cast<std::uint64_t>(high) << 32));
}

AccessibilityResult<AtspiObject> objectOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  return readObject(reply.message.get());
}

AccessibilityResult<AtspiObject> objectPropertyOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  if (!enterVariant(reply.message.get(), "(so)")) return AccessibilityError::failure;
  return readObject(reply.message.get());
}

AccessibilityResult<std::vector<AtspiObject>> objectsOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  sd_bus_message* message = reply.message.get();
  if (sd_bus_message_enter_container(message, 'a', "(so)") <= 0) {
    return AccessibilityError::failure;
  }
  std::vector<AtspiObject> objects;
  const char* busName = nullptr;
  const char* path = nullptr;
  while (objects.size() < mostObjects &&
         sd_bus_message_read(message, "(so)", &busName, &path) > 0) {
    AtspiObject object{busName, path};
    if (!object.isNull()) objects.push_back(std::move(object));
  }
  return objects;
}

AccessibilityResult<AtspiAttributes> attributesOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  sd_bus_message* message = reply.message.get();
  if (sd_bus_message_enter_container(message, 'a', "{ss}") <= 0) {
    return AccessibilityError::failure;
  }
  AtspiAttributes attributes;
  const char* key = nullptr;
  const char* value = nullptr;
  std::size_t bytes = 0;
  while (bytes < longestAttributes && sd_bus_message_read(message, "{ss}", &key, &value) > 0) {
    std::string name = boundedText(key);
    std::string text = boundedText(value);
    bytes += name.size() + text.size() + 1;
    attributes[std::move(name)] = std::move(text);
  }
  return attributes;
}

AccessibilityResult<std::vector<std::string>> textsOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  sd_bus_message* message = reply.message.get();
  if (sd_bus_message_enter_container(message, 'a', "s") <= 0) return AccessibilityError::failure;
  std::vector<std::string> texts;
  const char* text = nullptr;
  for (std::size_t bytes = 0;
       bytes < longestAttributes && sd_bus_message_read(message, "s", &text) > 0;
       bytes += texts.back().size() + 1) {
    texts.push_back(boundedText(text));
  }
  return texts;
}

AccessibilityResult<Rect> rectangleOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  if (sd_bus_message_read(reply.message.get(), "(iiii)", &x, &y, &width, &height) <= 0) {
    return AccessibilityError::failure;
  }
  // What toolkits answer for an element that is not shown anywhere.
  const bool isNowhere = x == std::numeric_limits<std::int32_t>::min() || width < 0 || height < 0;
  if (isNowhere) return AccessibilityError::noValue;
  return Rect{{static_cast<double>(x), static_cast<double>(y)},
              {static_cast<double>(width), static_cast<double>(height)}};
}

AccessibilityResult<ProcessIdentifier> processOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  std::uint32_t process = 0;
  if (sd_bus_message_read(reply.message.get(), "u", &process) <= 0 || process == 0) {
    return AccessibilityError::failure;
  }
  return static_cast<ProcessIdentifier>(process);
}

AccessibilityResult<bool> booleanOf(const AtspiReply& reply) {
  if (!reply.message) return reply.error;
  int value = 0;
  if (sd_bus_message_read(reply.message.get(), "b", &value) <= 0) {
    return AccessibilityError::failure;
  }
  return value != 0;
}

AccessibilityResult<AtspiObject> relationTargetOf(const AtspiReply& reply, std::uint32_t relation) {
  if (!reply.message) return reply.error;
  sd_bus_message* message = reply.message.get();
  if (sd_bus_message_enter_container(message, 'a', "(ua(so))") <= 0) {
    return AccessibilityError::failure;
  }
  std::uint32_t kind = 0;
  AtspiObject target;
  while (readRelation(message, kind, target)) {
    if (kind == relation && !target.isNull()) return target;
  }
  return AccessibilityError::noValue;
}

}  // namespace kestro
