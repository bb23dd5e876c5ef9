#include "extractors/TitleParts.h"

#include <fmt/format.h>

#include <algorithm>

namespace kestro {

std::vector<std::string> titleParts(std::string_view title, std::string_view separator) {
  std::vector<std::string> parts;
  for (auto end = title.find(separator); end != std::string_view::npos;
       end = title.find(separator)) {
    parts.emplace_back(title.substr(0, end));
    title.remove_prefix(end + separator.size());
  }
  parts.emplace_back(title);
  return parts;
}

bool areEmpty(const std::vector<std::string>& parts) {
  return std::ranges::all_of(parts, &std::string::empty);
}

std::string withoutEvery(std::string text, std::string_view part) {
  for (auto position = text.find(part); position != std::string::npos;
       position = text.find(part, position)) {
    text.erase(position, part.size());
  }
  return text;
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  return fmt::format("{}", fmt::join(parts, separator));
}

}  // namespace kestro
