// Walking UTF-8 texts by code point and by grapheme cluster.
// Views point into the given text. Ill-formed bytes are kept: they belong to no class of
// characters.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kestro {

struct CodePoint {
  std::int32_t value = 0;  // -1 for ill-formed bytes
  std::string_view bytes;
};

std::vector<CodePoint> codePoints(std::string_view text);
// Of a text that is not empty.
CodePoint firstCodePoint(std::string_view text);
CodePoint lastCodePoint(std::string_view text);
// What a reader counts as characters.
std::vector<std::string_view> graphemeClusters(std::string_view text);

bool isWhiteSpace(const CodePoint& codePoint);
// The text without Unicode white space at its ends.
std::string_view trimmingWhiteSpace(std::string_view text);

}  // namespace kestro
