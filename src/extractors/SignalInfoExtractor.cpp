#include "extractors/SignalInfoExtractor.h"

#include "extractors/ContextPath.h"
#include "extractors/EnhancedAccessibility.h"
#include "extractors/WebAreas.h"
#include "product/KestroDatabase.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

// The header comes first in its pane; what follows are messages, with a button for every reaction.
constexpr std::size_t mostButtonsExamined = 10;

std::optional<AccessibilityElement> applicationContainer(const AccessibilityElement& webArea) {
  return webArea.firstAlongFirstChildren(
      maxRecursionLevel(webArea.process()), [](const AccessibilityElement& element) {
        return element.stringAttribute(attribute::domIdentifier) == "app-container";
      });
}

// What the chosen side tab shows: the list of conversations and the open one.
std::optional<AccessibilityElement> tabPanel(const AccessibilityElement& container) {
  const auto depth = maxRecursionLevel(container.process());
  const auto tabs = container.firstDescendantWith({hasClass("NavTabs__Container")}, depth);
  return tabs ? tabs->firstDescendantWithSubrole(subrole::tabPanel, depth) : std::nullopt;
}

std::optional<std::string> nameBy(const AccessibilityElement& text) {
  const auto value = text.value();
  return value ? signalHeaderText(*value) : std::nullopt;
}

std::optional<std::string> nameOn(const AccessibilityElement& button) {
  const auto depth = maxRecursionLevel(button.process());
  return firstNonNil(
      button.descendantsWith({{attribute::role, std::string(role::staticText)}}, depth), nameBy);
}

// The name on the first button that has one.
std::optional<std::string> nameOnButtonsOf(const AccessibilityElement& pane, std::int64_t depth) {
  return firstNonNil(pane.descendantsWith({{attribute::role, std::string(role::button)}}, depth,
                                          mostButtonsExamined),
                     nameOn);
}

// The first of several panes is the list, whose rows are buttons too.
std::optional<std::string> nameInPanes(const AccessibilityElements& panes) {
  for (std::size_t index = panes.size(); index > 1; --index) {
    const auto depth = maxRecursionLevel(panes.front().process());
    if (auto conversation = nameOnButtonsOf(panes[index - 1], depth)) return conversation;
  }
  return std::nullopt;
}

std::optional<std::string> nameInPanel(const AccessibilityElement& panel) {
  AccessibilityElement element = panel;
  for (auto depth = maxRecursionLevel(panel.process()); depth >= 0; --depth) {
    if (auto conversation = nameOnButtonsOf(element, 1)) return conversation;
    const auto children = element.children();
    if (children.size() != 1) return nameInPanes(children);
    element = children.front();
  }
  return std::nullopt;
}

std::optional<std::string> conversationIn(const AccessibilityElement& webArea) {
  const auto container = applicationContainer(webArea);
  const auto panel = container ? tabPanel(*container) : std::nullopt;
  return panel ? nameInPanel(*panel) : std::nullopt;
}

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// "3", "99+" or "12:30". Longer numbers are the names of those who have no other.
bool isCounterOrTime(std::string_view text) {
  constexpr std::size_t mostDigits = 2;
  const std::size_t colon = text.find(':');
  if (colon != std::string_view::npos) {
    const auto minutes = text.substr(colon + 1);
    return isDigits(text.substr(0, colon)) && colon <= mostDigits && isDigits(minutes) &&
           minutes.size() == mostDigits;
  }
  if (text.ends_with('+')) text.remove_suffix(1);
  return isDigits(text) && text.size() <= mostDigits;
}

}  // namespace

std::optional<std::string> signalHeaderText(std::string_view text) {
  if (text.empty()) return std::nullopt;
  std::string visible = removingInvisibleControlCharacters(text);
  return isCounterOrTime(visible) ? std::nullopt : std::optional(std::move(visible));
}

void SignalInfoExtractor::writeDetailsForActivity(Activity& activity) {
  enableEnhancedAccessibility(process_, activity);
  writeFirstContextPath(process_, activity, [](const AccessibilityElement& window) {
    const auto conversation = firstNonNil(webAreas(window, nullptr), conversationIn);
    return conversation && !conversation->empty() ? ContextPath{*conversation} : ContextPath();
  });
}

}  // namespace kestro
