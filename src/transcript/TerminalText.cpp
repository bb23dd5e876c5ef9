#include "transcript/TerminalText.h"

namespace kestro {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

struct DecodedCharacter {
  char32_t codePoint;
  std::size_t length;
};

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

// Overlong forms, surrogates and what lies beyond Unicode.
bool isIllFormed(char32_t codePoint, std::size_t length) {
  if (length == 3 && codePoint < 0x800) return true;
  if (length == 4 && codePoint < 0x10000) return true;
  return (codePoint >= 0xD800 && codePoint <= 0xDFFF) || codePoint > 0x10FFFF;
}

// The first character of a text that is not empty; a byte that begins none counts as U+FFFD.
DecodedCharacter decodeFirst(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = sequenceLength(lead);
  if (length == 1) return {lead, 1};
  if (length == 0 || text.size() < length) return {replacementCharacter, 1};
  char32_t codePoint = lead & (0x7FU >> length);
  for (const char byte : text.substr(1, length - 1)) {
    if (!isContinuation(byte)) return {replacementCharacter, 1};
    codePoint = codePoint << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  if (isIllFormed(codePoint, length)) return {replacementCharacter, 1};
  return {codePoint, length};
}

bool isUnsafe(char32_t codePoint) {
  const auto isBetween = [&](char32_t first, char32_t last) {
    return codePoint >= first && codePoint <= last;
  };
  return isBetween(0, 0x1F) || isBetween(0x7F, 0x9F) || isBetween(0x200E, 0x200F) ||
         isBetween(0x2028, 0x202E) || isBetween(0x2066, 0x2069);
}

}  // namespace

std::string terminalText(std::string_view text, std::size_t limit) {
  std::string safe;
  for (std::size_t count = 0; !text.empty(); ++count) {
    if (count == limit) return safe + "…";
    const DecodedCharacter character = decodeFirst(text);
    if (isUnsafe(character.codePoint)) {
      safe += ' ';
    } else if (character.codePoint == replacementCharacter) {
      safe += "\uFFFD";
    } else {
      safe += text.substr(0, character.length);
    }
    text.remove_prefix(character.length);
  }
  return safe;
}

}  // namespace kestro
