#include "extractors/AdobeProjectPathInfoExtractor.h"

#include "extractors/EnhancedAccessibility.h"
#include "extractors/TitleParts.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr std::string_view unsavedMarker = " *";

}  // namespace

AdobeProjectPathInfoExtractor::AdobeProjectPathInfoExtractor(Process& process)
    : process_(process),
      path_(R"((/.+(\.prproj|\.aep)))"),
      afterEffectsPrefix_(R"(^Adobe After Effects \d+ - )"),
      premiereProPrefix_(R"(^Adobe Premiere Pro \d+ - )") {}

std::optional<std::string> AdobeProjectPathInfoExtractor::projectPath(
    std::string_view title) const {
  const auto match = firstMatch(title, path_);
  return match ? match->captures[1] : std::nullopt;
}

std::string AdobeProjectPathInfoExtractor::titleWithout(const std::string& path,
                                                        std::string_view title) const {
  std::string rest = removingSuffixIfPresent(title, unsavedMarker);
  rest = replacing(rest, afterEffectsPrefix_, "");
  rest = replacing(rest, premiereProPrefix_, "");
  rest = removingTitlePrefixesAndSuffixes(rest, path, true).value_or("");
  return withoutEvery(removingSuffixIfPresent(rest, unsavedMarker), path);
}

void AdobeProjectPathInfoExtractor::writeDetailsForActivity(Activity& activity) {
  enableEnhancedAccessibility(process_, activity);
  ActivityDetails& details = activity.details;
  if (details.documentPath || !details.windowTitle) return;
  const auto path = projectPath(*details.windowTitle);
  if (!path) return;
  details.documentPath = path;
  details.windowTitle = titleWithout(*path, *details.windowTitle);
  if (details.windowTitle->empty()) details.windowTitle.reset();
}

}  // namespace kestro
