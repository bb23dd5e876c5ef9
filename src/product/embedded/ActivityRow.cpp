#include "product/embedded/ActivityRow.h"

#include <nlohmann/json.hpp>

#include "product/Activity.h"

namespace kestro {
namespace {

// A page may be a whole image inside its address. Nobody looks for the rest of such a text.
constexpr std::size_t longestText = 8192;

bool isContinuationByte(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::string bounded(std::string text) {
  if (text.size() <= longestText) return text;
  std::size_t end = longestText;
  while (end > 0 && isContinuationByte(text[end]))
    --end;
  text.resize(end);
  return text;
}

std::optional<std::string> bounded(std::optional<std::string> text) {
  if (!text) return std::nullopt;
  return bounded(std::move(*text));
}

std::optional<std::string> jsonArray(const std::optional<std::vector<std::string>>& texts) {
  using Json = nlohmann::json;
  if (!texts) return std::nullopt;
  Json array = Json::array();
  std::size_t size = 0;
  for (const std::string& text : *texts) {
    size += text.size();
    if (size > longestText) break;
    array.push_back(text);
  }
  return array.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

ActivityFields::ActivityFields(const Activity& activity)
    : applicationBundleIdentifier(bounded(activity.applicationBundleIdentifier())),
      applicationName(bounded(activity.application().localizedName)),
      applicationExecutableURL(bounded(activity.applicationExecutableURL())),
      applicationProcessIdentifier(activity.applicationProcessIdentifier()),
      isFullscreen(activity.isFullscreen),
      isShowingSavePanel(activity.isShowingSavePanel),
      windowTitle(bounded(activity.details.windowTitle)),
      documentTitle(bounded(activity.details.documentTitle)),
      documentPath(bounded(activity.details.documentPath)),
      contextPath(jsonArray(activity.details.contextPath)),
      isPrivateBrowsing(activity.details.isPrivateBrowsing) {}

}  // namespace kestro
