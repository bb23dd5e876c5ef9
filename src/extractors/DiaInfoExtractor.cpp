#include "extractors/DiaInfoExtractor.h"

#include "extractors/WebAreaURLInfoExtractor.h"
#include "foundation/ComparableText.h"

namespace kestro {
namespace {

bool hasText(const std::optional<std::string>& text) {
  return text && !text->empty();
}

}  // namespace

std::string diaTitle(std::string_view windowTitle, std::string_view pageTitle) {
  constexpr std::string_view separator = ": ";
  std::string title(pageTitle);
  const auto found = windowTitle.find(separator);
  if (found == std::string_view::npos) return title;
  const std::string_view prefix = windowTitle.substr(0, found);
  if (prefix.find(':') != std::string_view::npos) return title;
  const std::string rest =
      comparableText(removingSameSuffix(windowTitle.substr(found + separator.size()), "…"));
  if (rest.empty() || !comparableText(pageTitle).starts_with(rest)) return title;
  return title.append(" – ").append(prefix);
}

void DiaInfoExtractor::writeDetailsForActivity(Activity& activity) {
  WebAreaURLInfoExtractor::readWebAddress(process_, activity);
  ActivityDetails& details = activity.details;
  if (hasText(details.windowTitle) && hasText(details.documentTitle)) {
    details.windowTitle = diaTitle(*details.windowTitle, *details.documentTitle);
  }
  details.documentTitle.reset();
}

}  // namespace kestro
