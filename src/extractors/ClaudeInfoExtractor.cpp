#include "extractors/ClaudeInfoExtractor.h"

#include "extractors/AccessibilityElement.h"
#include "extractors/EnhancedAccessibility.h"
#include "foundation/ComparableText.h"
#include "platform/UserDefaults.h"

namespace kestro {
namespace {

std::string serviceAddressFor(Process& process) {
  const auto preferred =
      process.platform().defaults.standard().string("ClaudeInfoExtractor_serviceAddress");
  return preferred && !preferred->empty() ? *preferred
                                          : std::string(ClaudeInfoExtractor::serviceAddress);
}

std::optional<AccessibilityElement> servicePage(const AccessibilityElement& window,
                                                std::string_view serviceAddress) {
  const auto webAreas = window.descendantsWith({{attribute::role, std::string(role::webArea)}},
                                               maxRecursionLevel(window.process()));
  return firstMatching(
      [&](const AccessibilityElement& webArea) {
        const auto address = webArea.urlString();
        return address && isClaudePage(*address, serviceAddress);
      },
      webAreas);
}

std::optional<AccessibilityElement> chatButton(const AccessibilityElement& page) {
  const auto depth = maxRecursionLevel(page.process());
  auto element = page.firstDescendantWith({hasClass("dframe-root")}, depth);
  if (element) element = element->firstDescendantWithSubrole(subrole::landmarkMain, depth);
  if (!element) return std::nullopt;
  return element->firstDescendantWith(
      {{attribute::role, std::string(role::button)}, hasClass("cursor-text")}, depth);
}

// What the chat belongs to, by the link beside its button or, without one, by a menu there that
// shows a text of its own.
std::optional<std::string> projectBeside(const AccessibilityElement& button,
                                         const std::optional<std::string>& chatTitle) {
  const auto parent = button.parent();
  const auto siblings = parent ? parent->children() : AccessibilityElements();
  const auto link = firstWithRole(role::link, siblings);
  if (auto project = link ? link->nonEmptyString(attribute::description) : std::nullopt) {
    return project;
  }
  const auto menu = firstWithRole(role::popUpButton, siblings);
  const auto text = menu ? menu->nonEmptyString(attribute::title) : std::nullopt;
  const auto project = text ? claudeChatTitle(*text) : std::nullopt;
  const bool isChat = project && chatTitle && isSameText(*project, *chatTitle);
  return isChat ? std::nullopt : project;
}

}  // namespace

ClaudeInfoExtractor::ClaudeInfoExtractor(Process& process)
    : process_(process), serviceAddress_(serviceAddressFor(process)) {}

bool isClaudePage(std::string_view address, std::string_view serviceAddress) {
  if (!address.starts_with(serviceAddress)) return false;
  const std::string_view rest = address.substr(serviceAddress.size());
  return rest.empty() || serviceAddress.ends_with('/') ||
         std::string_view("/?#").find(rest.front()) != std::string_view::npos;
}

std::optional<std::string> claudeChatTitle(std::string_view buttonTitle) {
  if (isSameText(buttonTitle, "Claude")) return std::nullopt;
  std::string title = removingSameSuffix(buttonTitle, " - Claude");
  return title.empty() ? std::nullopt : std::optional(std::move(title));
}

void ClaudeInfoExtractor::writeDetailsForActivity(Activity& activity) {
  const auto windows = accessibilityWindows(process_, activity);
  if (windows.empty()) return;
  enableEnhancedAccessibility(process_, activity);
  const auto page = servicePage(windows.front(), serviceAddress_);
  const auto button = page ? chatButton(*page) : std::nullopt;
  if (!button) return;

  const auto buttonTitle = button->nonEmptyString(attribute::title);
  const auto chatTitle = buttonTitle ? claudeChatTitle(*buttonTitle) : std::nullopt;
  std::vector<std::string> path;
  if (auto project = projectBeside(*button, chatTitle)) path.push_back(std::move(*project));
  if (chatTitle) path.push_back(*chatTitle);
  if (!path.empty()) activity.details.contextPath = std::move(path);
}

}  // namespace kestro
