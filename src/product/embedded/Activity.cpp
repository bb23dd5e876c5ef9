#include "product/Activity.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string_view>

namespace kestro {
namespace {

// Unreserved characters and those that a path may hold as they are. The semicolon is legal there
// but the designed platform's file URLs escape it, because it once began a path's parameters.
bool staysInPath(char character) {
  constexpr std::string_view others = "-._~!$&'()*+,=:@/";
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || others.find(character) != std::string_view::npos;
}

std::string percentEncoded(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(path.size());
  for (const char character : path) {
    if (staysInPath(character)) {
      encoded += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    encoded += {'%', digits[byte >> 4U], digits[byte & 0xFU]};
  }
  return encoded;
}

std::optional<std::string> listText(const std::optional<std::vector<std::string>>& texts) {
  if (!texts) return std::nullopt;
  std::vector<std::string> quoted;
  quoted.reserve(texts->size());
  for (const std::string& text : *texts)
    quoted.push_back(fmt::format("\"{}\"", text));
  return fmt::format("[{}]", fmt::join(quoted, ", "));
}

}  // namespace

std::string ActivityDetails::description() const {
  constexpr const char* absent = "(nil)";
  return fmt::format(
      "windowTitle: {}\n"
      "documentTitle: {}\n"
      "documentPath: {}\n"
      "contextPath: {}\n"
      "isPrivateBrowsing: {}",
      windowTitle.value_or(absent), documentTitle.value_or(absent), documentPath.value_or(absent),
      listText(contextPath).value_or(absent), isPrivateBrowsing);
}

std::optional<std::string> Activity::applicationExecutableURL() const {
  const auto& path = application_.executablePath;
  if (!path || !path->starts_with('/')) return std::nullopt;
  return "file://" + percentEncoded(*path);
}

std::optional<std::string> Activity::applicationExecutableName() const {
  if (!application_.executablePath) return std::nullopt;
  std::string_view path = *application_.executablePath;
  while (path.ends_with('/'))
    path.remove_suffix(1);
  path.remove_prefix(path.rfind('/') + 1);
  if (path.empty()) return std::nullopt;
  return std::string(path);
}

}  // namespace kestro
