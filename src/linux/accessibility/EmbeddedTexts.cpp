#include "linux/accessibility/EmbeddedTexts.h"

namespace kestro {
namespace {

constexpr std::string_view mark = "\uFFFC";

void beginLine(std::string& text) {
  if (!text.empty() && !text.ends_with('\n')) text += '\n';
}

}  // namespace

bool hasEmbeddedTexts(std::string_view text) {
  return text.find(mark) != std::string_view::npos;
}

std::string withEmbeddedTexts(std::string_view text, const std::vector<EmbeddedText>& embedded) {
  std::string whole;
  auto next = embedded.begin();
  while (!text.empty()) {
    const std::size_t end = text.find(mark);
    whole += text.substr(0, end);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + mark.size());
    if (next == embedded.end()) continue;
    if (next->isBlock) beginLine(whole);
    whole += next->text;
    if (next->isBlock) beginLine(whole);
    ++next;
  }
  if (whole.ends_with('\n')) whole.pop_back();
  return whole;
}

}  // namespace kestro
