#include "extractors/TitleParts.h"

#include <fmt/format.h>

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

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  return fmt::format("{}", fmt::join(parts, separator));
}

}  // namespace kestro
