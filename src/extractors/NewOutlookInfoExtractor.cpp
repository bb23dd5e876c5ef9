#include "extractors/NewOutlookInfoExtractor.h"

#include <algorithm>

#include "extractors/ContextPath.h"
#include "platform/LocalizedStrings.h"
#include "product/KestroLegacy.h"

namespace kestro {
namespace {

// Groups around the message list. The open message, which can be a whole web page, lies deeper.
constexpr std::int64_t listDepth = 6;

// The lists of folders and messages: the first table and the first outline of each scroll area.
AccessibilityElements messageLists(const AccessibilityElement& window) {
  AccessibilityElements lists;
  const auto splitGroup = window.firstDescendantWithRole(role::splitGroup, listDepth);
  if (!splitGroup) return lists;
  for (const AccessibilityElement& scrollArea :
       splitGroup->descendantsWith({{attribute::role, std::string(role::scrollArea)}}, listDepth)) {
    for (const std::string_view listRole : {role::table, role::outline}) {
      const auto list = scrollArea.firstDescendantWithRole(listRole, listDepth);
      if (list && !containsElement(lists, *list)) lists.push_back(*list);
    }
  }
  return lists;
}

// The sender of the message that is shown.
std::optional<std::string> headerSender(const AccessibilityElement& window) {
  const auto depth = maxRecursionLevel(window.process());
  const auto header = window.firstDescendantWith(
      {{attribute::identifier, "HeaderMainContainer"}, {attribute::role, std::string(role::group)}},
      depth);
  const auto sender = header ? header->firstDescendantWith(
                                   {{attribute::identifier, "messageHeaderFromContent"}}, depth)
                             : std::nullopt;
  if (!sender) return std::nullopt;
  for (const auto name : {attribute::value, attribute::title, attribute::description}) {
    if (auto text = sender->nonEmptyString(name)) return text;
  }
  const auto text = sender->firstDescendantWithRole(role::staticText, depth);
  return text ? text->nonEmptyString(attribute::value) : std::nullopt;
}

std::optional<std::string> nonEmpty(const std::optional<std::string>& capture) {
  return capture && !capture->empty() ? capture : std::nullopt;
}

}  // namespace

NewOutlookInfoExtractor::NewOutlookInfoExtractor(Process& process)
    : process_(process),
      rowExpression_(
          RegularExpression::compile(localizedString(process, "Subject: (.+), Sender: ([^,]+),"))) {
}

NewOutlookInfoExtractor::Summary NewOutlookInfoExtractor::summary(
    std::string_view rowDescription) const {
  const auto match = rowExpression_ ? firstMatch(rowDescription, *rowExpression_) : std::nullopt;
  constexpr std::size_t fewestCaptures = 3;
  if (!match || match->captures.size() < fewestCaptures) return {};
  return {nonEmpty(match->captures[1]), nonEmpty(match->captures[2])};
}

NewOutlookInfoExtractor::Summary NewOutlookInfoExtractor::selectedMessage(
    const AccessibilityElement& window) const {
  for (const AccessibilityElement& list : messageLists(window)) {
    const auto rows = list.selectedRows();
    const auto description =
        rows.empty() ? std::nullopt : rows.front().stringAttribute(attribute::description);
    if (!description) continue;
    Summary message = summary(*description);
    if (message.subject || message.sender) return message;
  }
  return {};
}

std::vector<std::string> NewOutlookInfoExtractor::contextPath(
    const AccessibilityElement& window) const {
  Summary message = selectedMessage(window);
  if (!message.sender) message.sender = headerSender(window);
  std::vector<std::string> texts;
  if (message.subject) texts.push_back(std::move(*message.subject));
  if (message.sender) texts.push_back(std::move(*message.sender));
  std::ranges::reverse(texts);
  return texts;
}

void NewOutlookInfoExtractor::writeDetailsForActivity(Activity& activity) {
  writeFirstContextPath(process_, activity,
                        [this](const AccessibilityElement& window) { return contextPath(window); });
}

}  // namespace kestro
