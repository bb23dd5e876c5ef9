#include "extractors/SparkPage.h"

#include "product/KestroUI.h"

namespace kestro {
namespace {

AccessibilityElements allBelow(const AccessibilityElement& element, std::string_view role,
                               std::int64_t depth) {
  return element.descendantsWith({{attribute::role, std::string(role)}}, depth);
}

AccessibilityElements allBelow(const AccessibilityElement& element, std::string_view role) {
  return allBelow(element, role, maxRecursionLevel(element.process()));
}

std::optional<AccessibilityElement> withSubrole(const AccessibilityElement& element,
                                                std::string_view subrole) {
  return element.firstDescendantWithSubrole(subrole, maxRecursionLevel(element.process()));
}

std::optional<AccessibilityElement> withDOMIdentifier(const AccessibilityElement& element,
                                                      std::string identifier) {
  return element.firstDescendantWith({{attribute::domIdentifier, std::move(identifier)}},
                                     maxRecursionLevel(element.process()));
}

std::vector<std::string> textsOn(const AccessibilityElements& buttons) {
  std::vector<std::string> texts;
  for (const AccessibilityElement& button : buttons) {
    for (const AccessibilityElement& text : allBelow(button, role::staticText)) {
      if (auto value = text.nonEmptyString(attribute::value)) texts.push_back(std::move(*value));
    }
  }
  return texts;
}

// An area among the recipients is where another one is typed.
std::optional<std::string> writtenText(const AccessibilityElement& composer,
                                       const std::optional<AccessibilityElement>& recipients) {
  const auto typed = recipients ? allBelow(*recipients, role::textArea) : AccessibilityElements();
  const auto area = firstMatching(
      [&](const AccessibilityElement& candidate) { return !containsElement(typed, candidate); },
      allBelow(composer, role::textArea));
  return area ? area->value() : std::nullopt;
}

std::optional<AccessibilityElement> articleIn(const AccessibilityElement& element) {
  return withSubrole(element, subrole::documentArticle);
}

// Entries of the message list may be articles too: one in a region is the open message.
std::optional<AccessibilityElement> openArticle(const AccessibilityElement& webArea) {
  const auto wrapper = withDOMIdentifier(webArea, "SPLIT_CONTAINER_WRAPPER");
  const AccessibilityElement& content = wrapper ? *wrapper : webArea;
  const auto regions =
      content.descendantsWith({{attribute::subrole, std::string(subrole::landmarkRegion)}},
                              maxRecursionLevel(webArea.process()));
  return firstNonNil(regions.empty() ? AccessibilityElements{content} : regions, articleIn);
}

}  // namespace

std::optional<SparkComposer> sparkComposer(const AccessibilityElement& webArea) {
  const auto composer = withDOMIdentifier(webArea, "composer-container");
  if (!composer) return std::nullopt;
  const auto group = withSubrole(*composer, subrole::applicationGroup);
  auto recipients = group ? textsOn(allBelow(*group, role::button)) : std::vector<std::string>();
  return SparkComposer{std::move(recipients), writtenText(*composer, group)};
}

std::optional<std::string> sparkCurrentFolder(const AccessibilityElement& webArea) {
  const auto sidebar = withSubrole(webArea, subrole::landmarkNavigation);
  if (!sidebar) return std::nullopt;
  const auto folder = firstMatching(
      [](const AccessibilityElement& box) {
        return box.booleanAttribute(attribute::value) == true;
      },
      sidebar->descendantsWith({{attribute::role, std::string(role::checkBox)}},
                               maxRecursionLevel(webArea.process())));
  return folder ? folder->nonEmptyString(attribute::description) : std::nullopt;
}

// Whether the line of buttons ends an article that begins with something else, as the buttons do
// that answer the message.
bool isBehindMessage(const AccessibilityElements& line, const AccessibilityElement& article) {
  const auto ancestors = ancestorsUpTo(article, line.back());
  bool isFirst = true;
  AccessibilityElement first = line.front();
  AccessibilityElement last = line.back();
  for (const AccessibilityElement& ancestor : ancestors) {
    const auto children = ancestor.children();
    if (children.empty() || children.back() != last) return false;
    // Beside names, in their own group, stands the date.
    const bool isGroupOfLine = ancestor == ancestors.front() && ancestor != article;
    isFirst = isFirst && (isGroupOfLine || children.front() == first);
    first = last = ancestor;
  }
  return !isFirst;
}

// The texts on the first button that has some and on those beside it. Other buttons, such as those
// that answer the message, stand elsewhere; where they are the only ones nobody is named.
std::vector<std::string> sparkCorrespondents(const AccessibilityElement& webArea) {
  const auto article = openArticle(webArea);
  if (!article) return {};
  for (const AccessibilityElement& button : allBelow(*article, role::button)) {
    if (textsOn({button}).empty()) continue;
    const auto parent = button.parent();
    const auto line = parent ? allBelow(*parent, role::button, 1) : AccessibilityElements();
    if (line.empty() || isBehindMessage(line, *article)) return {};
    return textsOn(line);
  }
  return {};
}

}  // namespace kestro
