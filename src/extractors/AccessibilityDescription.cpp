#include "extractors/AccessibilityDescription.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "accessibility/UIElementUtilities.h"
#include "platform/Process.h"

namespace kestro {
namespace {

// As deep as searches go: a tree may lead back to itself, and each level makes lines longer.
constexpr std::int64_t deepestTree = 1000;

class Summary {
 public:
  void append(std::string_view key, const std::optional<std::string>& value) {
    if (!value || value->empty()) return;
    if (!text_.empty()) text_ += ' ';
    text_ += fmt::format("{}='{}'", key, *value);
    keys_.insert(std::string(key));
  }
  void appendKey(std::string key) { keys_.insert(std::move(key)); }
  bool hasKey(const std::string& key) const { return keys_.contains(key); }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
  std::set<std::string> keys_;
};

std::optional<std::string> joinedClassList(const AccessibilityElement& element) {
  const auto classes = element.stringListAttribute(attribute::domClassList);
  return classes ? std::optional(fmt::format("{}", fmt::join(*classes, ", "))) : std::nullopt;
}

std::optional<std::string> selection(const AccessibilityElement& element) {
  if (element.booleanAttribute(attribute::selected) != true) return std::nullopt;
  return "true";
}

// The name as a key of the summary would be written: without "AX", in lower case.
std::string keyForAttribute(std::string_view name) {
  if (name.starts_with("AX")) name.remove_prefix(2);
  std::string key(name);
  std::ranges::transform(key, key.begin(), [](unsigned char letter) {
    return letter < 0x80 ? static_cast<char>(std::tolower(letter)) : static_cast<char>(letter);
  });
  return key;
}

void appendFurtherAttributes(Summary& summary, const AccessibilityElement& element) {
  const auto& utilities = element.process().shared<UIElementUtilities>();
  auto names = utilities.attributeNamesOfUIElement(element.handle());
  if (!names) return;
  std::ranges::sort(*names);
  for (const std::string& name : *names) {
    std::string key = keyForAttribute(name);
    if (summary.hasKey(key)) continue;
    const auto text = element.stringAttribute(name);
    if (!text || text->empty()) continue;
    summary.append(name, text);
    summary.appendKey(std::move(key));
  }
}

// Each line of `text` with `prefix` before it, each on a new line.
void appendPrefixed(std::string& result, std::string_view prefix, std::string_view text) {
  while (true) {
    const auto end = text.find('\n');
    result += fmt::format("\n{}{}", prefix, text.substr(0, end));
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

void appendTree(std::string& result, const std::string& prefix, const AccessibilityElement& element,
                std::int64_t depth, std::size_t& elementsLeft) {
  if (elementsLeft == 0) return;
  --elementsLeft;
  appendPrefixed(result, prefix, attributeSummary(element, SummaryForm::brief));
  if (depth <= 0 || elementsLeft == 0) return;
  const auto children = element.children();
  for (std::size_t index = 0; index < children.size(); ++index) {
    appendTree(result, fmt::format("{}|\t({}) ", prefix, index), children[index], depth - 1,
               elementsLeft);
  }
}

}  // namespace

std::string attributeSummary(const AccessibilityElement& element, SummaryForm form) {
  Summary summary;
  const auto role = element.role();
  summary.append("role", role);
  summary.append("subrole", element.subrole());
  if (role == role::window) {
    summary.append("document", element.stringAttribute(attribute::document));
  }
  summary.append("title", element.title());
  summary.append("help", element.stringAttribute(attribute::help));
  summary.append("label", element.stringAttribute(attribute::description));
  summary.append("value", element.value());
  summary.append("url", element.urlString());
  summary.append("identifier", element.stringAttribute(attribute::identifier));
  summary.append("domIdentifier", element.stringAttribute(attribute::domIdentifier));
  summary.append("domClassList", joinedClassList(element));
  summary.append("selected", selection(element));
  summary.append("path", element.stringAttribute(attribute::path));
  if (form == SummaryForm::full) appendFurtherAttributes(summary, element);
  return summary.text();
}

std::optional<std::string> treeDescription(const AccessibilityElement& element,
                                           std::int64_t depth) {
  std::size_t elementsLeft = mostElementsExamined;
  return treeDescription(element, depth, elementsLeft);
}

std::optional<std::string> treeDescription(const AccessibilityElement& element, std::int64_t depth,
                                           std::size_t& elementsLeft) {
  if (depth < 0 || elementsLeft == 0) return std::nullopt;
  std::string text;
  appendTree(text, "", element, std::min(depth, deepestTree), elementsLeft);
  return text.substr(1);
}

}  // namespace kestro
