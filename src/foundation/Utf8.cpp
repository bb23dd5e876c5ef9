#include "foundation/Utf8.h"

#include <array>
#include <cstdint>

namespace kestro {
namespace {

// The smallest character that needs so many following bytes.
constexpr std::array<std::uint32_t, 4> smallestCharacter{0, 0x80, 0x800, 0x10000};

int followingBytes(unsigned char lead) {
  if (lead < 0x80) return 0;
  if (lead >= 0xc2 && lead < 0xe0) return 1;
  if (lead >= 0xe0 && lead < 0xf0) return 2;
  if (lead >= 0xf0 && lead < 0xf5) return 3;
  return -1;
}

bool isCharacter(std::uint32_t character, int following) {
  const bool isSurrogate = character >= 0xd800 && character < 0xe000;
  return character >= smallestCharacter[static_cast<std::size_t>(following)] &&
         character <= 0x10ffff && !isSurrogate;
}

}  // namespace

bool isValidUtf8(std::string_view text) {
  for (std::size_t index = 0; index < text.size();) {
    const auto lead = static_cast<unsigned char>(text[index++]);
    const int following = followingBytes(lead);
    if (following < 0 || text.size() - index < static_cast<std::size_t>(following)) return false;
    std::uint32_t character = following == 0 ? lead : lead & (0x3fU >> following);
    for (int count = 0; count < following; ++count) {
      const auto byte = static_cast<unsigned char>(text[index++]);
      if ((byte & 0xc0) != 0x80) return false;
      character = (character << 6) | (byte & 0x3fU);
    }
    if (!isCharacter(character, following)) return false;
  }
  return true;
}

std::string utf8FromLatin1(std::string_view text) {
  std::string result;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      result += character;
    } else {
      result += static_cast<char>(0xc0 | (byte >> 6));
      result += static_cast<char>(0x80 | (byte & 0x3f));
    }
  }
  return result;
}

std::string withoutControlCharacters(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    const bool isLate = byte == 0xc2 && index + 1 < text.size() &&
                        static_cast<unsigned char>(text[index + 1]) < 0xa0;
    if (isLate) ++index;
    result += isLate || byte < 0x20 || byte == 0x7f ? ' ' : text[index];
  }
  return result;
}

}  // namespace kestro
