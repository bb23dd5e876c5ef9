#include "extractors/ChatGPTInfoExtractor.h"

#include <algorithm>

#include "extractors/ContextPath.h"
#include "extractors/TitleParts.h"
#include "foundation/ComparableText.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr int wrapperLevels = 4;

// The parts of the window on either side of the first splitter. A hidden sidebar leaves none.
struct Parts {
  AccessibilityElements sidebar, conversation;
};

Parts partsOf(const AccessibilityElement& splitGroup) {
  const auto children = splitGroup.children();
  const auto splitter = std::ranges::find_if(
      children, [](const AccessibilityElement& child) { return child.role() == role::splitter; });
  if (splitter == children.end()) return {{}, children};
  return {{children.begin(), splitter}, {std::next(splitter), children.end()}};
}

AccessibilityElements allWithin(const AccessibilityElement& element, std::string_view role) {
  return element.descendantsWith({{attribute::role, std::string(role)}}, wrapperLevels);
}

std::optional<AccessibilityElement> listOfChats(const AccessibilityElements& sidebar) {
  return firstNonNil(sidebar, [](const AccessibilityElement& part) {
    const auto scrollArea = part.firstDescendantWithRole(role::scrollArea, wrapperLevels);
    return scrollArea ? scrollArea->firstDescendantWithRole(role::list, wrapperLevels)
                      : std::nullopt;
  });
}

std::optional<std::string> selectedChat(const AccessibilityElement& list) {
  const auto button = firstMatching(
      [](const AccessibilityElement& chat) {
        return chat.booleanAttribute(attribute::selected) == true;
      },
      allWithin(list, role::button));
  return button ? button->nonEmptyString(attribute::description) : std::nullopt;
}

// Most buttons of the toolbar say what they do; one that is described like a chat of the list names
// it.
std::optional<std::string> chatOfToolbar(const AccessibilityElement& toolbar,
                                         const AccessibilityElement& list) {
  const auto buttons = allWithin(toolbar, role::button);
  return firstNonNil(buttons, [&](const AccessibilityElement& button) {
    auto text = button.nonEmptyString(attribute::description);
    if (!text) return text;
    const auto chat =
        list.firstDescendantWith({{attribute::role, std::string(role::button)},
                                  ElementCondition::says(attribute::description, *text)},
                                 wrapperLevels);
    return chat ? text : std::nullopt;
  });
}

std::optional<AccessibilityElement> toolbarOf(const AccessibilityElement& window,
                                              const AccessibilityElements& conversation) {
  auto toolbar = firstNonNil(conversation, [](const AccessibilityElement& part) {
    return part.firstDescendantWithRole(role::toolbar, wrapperLevels);
  });
  return toolbar ? toolbar : firstWithRole(role::toolbar, window.children());
}

std::vector<std::string> groupTexts(const AccessibilityElement& toolbar) {
  std::vector<std::string> texts;
  for (const AccessibilityElement& group : allWithin(toolbar, role::group)) {
    if (auto text = group.nonEmptyString(attribute::description)) texts.push_back(std::move(*text));
  }
  return texts;
}

std::vector<std::string> chatGPTPath(const AccessibilityElement& window) {
  const auto splitGroup = window.firstDescendantWithRole(role::splitGroup, wrapperLevels);
  if (!splitGroup) return {};
  const Parts parts = partsOf(*splitGroup);
  const auto list = listOfChats(parts.sidebar);
  const auto toolbar = toolbarOf(window, parts.conversation);
  auto chat = list ? selectedChat(*list) : std::nullopt;
  if (!chat && list && toolbar) chat = chatOfToolbar(*toolbar, *list);
  return chatGPTContextPath(toolbar ? groupTexts(*toolbar) : std::vector<std::string>(), chat);
}

}  // namespace

std::vector<std::string> chatGPTContextPath(std::vector<std::string> toolbarTexts,
                                            const std::optional<std::string>& chat) {
  std::erase_if(toolbarTexts, [&](const std::string& text) {
    return comparableText(text).starts_with("ChatGPT") || isSameText(text, "New Chat") ||
           (chat && isSameText(text, *chat));
  });
  std::vector<std::string> path;
  if (!toolbarTexts.empty()) path.push_back(joined(toolbarTexts, ", "));
  const bool namesChat = chat && !isSameText(*chat, "ChatGPT") && !isSameText(*chat, "New Chat");
  if (namesChat) path.push_back(*chat);
  return path;
}

void ChatGPTInfoExtractor::writeDetailsForActivity(Activity& activity) {
  writeFirstContextPath(process_, activity, chatGPTPath);
}

}  // namespace kestro
