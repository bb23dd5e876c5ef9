#include "extractors/TitleParts.h"

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

}  // namespace kestro
