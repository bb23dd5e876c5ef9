// Texts with other elements in them. AT-SPI puts U+FFFC where an element stands; the designed
// platform has that element's text there. Pure functions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestro {

struct EmbeddedText {
  std::string text;
  bool isBlock = false;  // stands on lines of its own
};

bool hasEmbeddedTexts(std::string_view text);
// `text` with the embedded texts in the places of the marks, in order. A mark without a text, and a
// line break at the end, are left out.
std::string withEmbeddedTexts(std::string_view text, const std::vector<EmbeddedText>& embedded);

}  // namespace kestro
