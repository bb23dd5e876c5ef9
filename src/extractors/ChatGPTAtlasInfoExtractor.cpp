#include "extractors/ChatGPTAtlasInfoExtractor.h"

#include "extractors/AccessibilityElement.h"
#include "platform/UserDefaults.h"

namespace kestro {
namespace {

// The process that hosts the web content. The preference stands in when the browser renames it.
constexpr const char* usualCompanion = "com.openai.atlas.web";
constexpr const char* companionKey = "ChatGPTAtlasInfoExtractor_companionBundleIdentifier";

// An empty preference counts as unset.
std::string companionOf(const Process& process) {
  const auto stored = process.platform().defaults.standard().string(companionKey);
  return stored && !stored->empty() ? *stored : usualCompanion;
}

std::optional<AccessibilityElement> firstChild(const AccessibilityElement& element) {
  const auto children = element.children();
  return children.empty() ? std::nullopt : std::optional(children.front());
}

// The page lies in the web area of the browser's own surface, which is a web page too.
std::optional<AccessibilityElement> pageOf(const AccessibilityElement& window) {
  auto element = firstWithRole(role::group, window.children());
  if (element) element = lastWithRole(role::group, element->children());
  if (element) element = firstWithRole(role::webArea, element->children());
  if (element) element = firstChild(*element);
  if (element) element = firstWithRole(role::webArea, element->children());
  if (element) element = firstChild(*element);
  return element ? element->parent() : std::nullopt;
}

}  // namespace

ChatGPTAtlasInfoExtractor::ChatGPTAtlasInfoExtractor(Process& process)
    : process_(process), companionBundleIdentifier_(companionOf(process)) {}

void ChatGPTAtlasInfoExtractor::enableWebContent() const {
  const Platform& platform = process_.platform();
  const auto companions = platform.workspace.runningApplications(companionBundleIdentifier_);
  if (companions.empty()) return;
  const auto handle =
      platform.accessibility.applicationElement(companions.front().processIdentifier);
  if (!handle) return;
  const AccessibilityElement application(process_, *handle);
  if (application.booleanAttribute(attribute::enhancedUserInterface) == true) return;
  application.setStringValue("1", attribute::enhancedUserInterface);
}

void ChatGPTAtlasInfoExtractor::writeDetailsForActivity(Activity& activity) {
  const auto windows = accessibilityWindows(process_, activity);
  if (windows.empty()) return;
  enableWebContent();
  for (const AccessibilityElement& window : windows) {
    const auto page = pageOf(window);
    if (!page) continue;
    ActivityDetails& details = activity.details;
    if (auto title = page->nonEmptyString(attribute::title)) details.documentTitle = title;
    const auto address = page->urlString();
    if (!address || address->empty()) continue;
    details.documentPath = address;
    return;
  }
}

}  // namespace kestro
