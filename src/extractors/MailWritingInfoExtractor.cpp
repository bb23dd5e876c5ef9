#include "extractors/MailWritingInfoExtractor.h"

#include "extractors/ContextPath.h"
#include "extractors/TitleParts.h"
#include "platform/LocalizedStrings.h"

namespace kestro {
namespace {

// The rows above the text: the window's children, or those of the split view that holds them.
AccessibilityElements composeHeader(const AccessibilityElement& window) {
  auto children = window.children();
  if (children.empty() || children.front().role() != role::splitGroup) return children;
  return children.front().children();
}

// A label such as "To:" before the field of the recipients.
bool isComposeHeader(const AccessibilityElements& header) {
  constexpr std::size_t fewestElements = 3;
  if (header.size() < fewestElements) return false;
  if (header[0].role() != role::staticText || header[1].role() != role::textField) return false;
  const auto label = header[0].value();
  return label && label->find(':') != std::string::npos;
}

std::optional<std::string> senderOf(const AccessibilityElements& header) {
  for (const AccessibilityElement& element : header) {
    if (element.role() != role::popUpButton) continue;
    auto address = element.value();
    if (address && address->find('@') != std::string::npos) return address;
  }
  return std::nullopt;
}

// The address tokens in the field behind the label.
std::vector<std::string> recipientsOf(const AccessibilityElement& field) {
  std::vector<std::string> recipients;
  for (const AccessibilityElement& token : field.children()) {
    if (token.subrole() != subrole::textAttachment) continue;
    auto recipient = token.value();
    if (recipient) recipients.push_back(std::move(*recipient));
  }
  return recipients;
}

// The sender's line, then the recipients'.
ContextPath correspondents(const AccessibilityElement& window) {
  const auto header = composeHeader(window);
  if (!isComposeHeader(header)) return {};
  Process& process = window.process();
  ContextPath lines;
  if (const auto sender = senderOf(header)) {
    lines.push_back(localizedFormat(process, "From: %@", *sender));
  }
  const auto recipients = recipientsOf(header[1]);
  if (!recipients.empty()) {
    lines.push_back(localizedFormat(process, "To: %@", joined(recipients, ", ")));
  }
  return lines;
}

}  // namespace

void MailWritingInfoExtractor::writeDetailsForActivity(Activity& activity) {
  writeFirstContextPath(process_, activity, correspondents);
}

}  // namespace kestro
