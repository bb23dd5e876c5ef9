#include "extractors/AmazonChimeInfoExtractor.h"

#include "extractors/ContextPath.h"

namespace kestro {
namespace {

std::vector<std::string> conversationTexts(const AccessibilityElement& window) {
  std::vector<std::string> texts;
  const auto splitGroup = firstWithRole(role::splitGroup, window.children());
  const auto group = splitGroup ? firstWithRole(role::group, splitGroup->children()) : std::nullopt;
  if (!group) return texts;
  for (const AccessibilityElement& child : group->children()) {
    if (child.role() != role::staticText) continue;
    if (auto text = child.value()) texts.push_back(std::move(*text));
  }
  return texts;
}

}  // namespace

void AmazonChimeInfoExtractor::writeDetailsForActivity(Activity& activity) {
  writeFirstContextPath(process_, activity, conversationTexts);
}

}  // namespace kestro
