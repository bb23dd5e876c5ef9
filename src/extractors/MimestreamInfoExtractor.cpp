#include "extractors/MimestreamInfoExtractor.h"

#include "extractors/AccessibilityElement.h"
#include "foundation/ComparableText.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

// What a row or the window's split view may wrap its parts in.
constexpr std::int64_t wrappingDepth = 6;

// The account that the message is sent from, then the message's subject.
std::vector<std::string> writtenMessage(const AccessibilityElement& window) {
  std::vector<std::string> texts;
  const auto popUpButton = firstWithRole(role::popUpButton, window.children());
  auto account = popUpButton ? popUpButton->nonEmptyString(attribute::value) : std::nullopt;
  if (account) texts.push_back(std::move(*account));
  auto title = window.title();
  if (title && namesMimestreamMessage(*title)) texts.push_back(std::move(*title));
  return texts;
}

std::optional<AccessibilityElement> tableIn(const AccessibilityElement& scrollArea) {
  constexpr std::int64_t tableDepth = 2;
  return scrollArea.firstDescendantWithRole(role::table, tableDepth);
}

std::optional<AccessibilityElement> messageTable(const AccessibilityElement& window) {
  const auto splitGroup = firstWithRole(role::splitGroup, window.children());
  if (!splitGroup) return std::nullopt;
  return firstNonNil(splitGroup->descendantsWith({{attribute::role, std::string(role::scrollArea)}},
                                                 wrappingDepth),
                     tableIn);
}

std::optional<AccessibilityElement> senderOf(const AccessibilityElement& row) {
  const auto text = firstWithRole(role::staticText, row.children());
  return text ? text : row.firstDescendantWithRole(role::staticText, wrappingDepth);
}

std::vector<std::string> selectedMessage(const AccessibilityElement& window) {
  const auto table = messageTable(window);
  const auto rows = table ? table->selectedRows() : AccessibilityElements();
  if (rows.empty()) return {};
  const auto sender = senderOf(rows.front());
  const auto subject =
      rows.front().firstDescendantWith({{attribute::identifier, "_NS:129"}}, wrappingDepth);
  std::vector<std::string> texts;
  for (const auto& element : {sender, subject == sender ? std::nullopt : subject}) {
    auto text = element ? element->nonEmptyString(attribute::value) : std::nullopt;
    if (text) texts.push_back(std::move(*text));
  }
  return texts;
}

}  // namespace

bool namesMimestreamMessage(std::string_view windowTitle) {
  return !windowTitle.empty() && !isSameText(windowTitle, "New Message");
}

void MimestreamInfoExtractor::writeDetailsForActivity(Activity& activity) {
  const auto windows = accessibilityWindows(process_, activity);
  if (windows.empty()) return;
  const AccessibilityElement& window = windows.front();
  const bool isComposing = window.stringAttribute(attribute::identifier) == "ComposeWindow";
  auto texts = isComposing ? writtenMessage(window) : selectedMessage(window);
  if (!texts.empty()) activity.details.contextPath = std::move(texts);
}

}  // namespace kestro
