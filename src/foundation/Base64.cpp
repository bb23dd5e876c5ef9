#include "foundation/Base64.h"

namespace kestro {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::size_t paddingLength(std::string_view text) {
  if (text.ends_with("==")) return 2;
  return text.ends_with("=") ? 1 : 0;
}

}  // namespace

std::string base64(const Data& bytes) {
  std::string text;
  for (std::size_t start = 0; start < bytes.size(); start += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - start);
    std::uint32_t group = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      group = group << 8 | (index < count ? bytes[start + index] : 0U);
    }
    for (std::size_t index = 0; index < 4; ++index) {
      text += index <= count ? alphabet[group >> (18 - 6 * index) & 0x3F] : '=';
    }
  }
  return text;
}

std::optional<Data> parseBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  text.remove_suffix(paddingLength(text));
  Data bytes;
  std::uint32_t pending = 0;
  unsigned pendingBits = 0;
  for (const char character : text) {
    const std::size_t digit = alphabet.find(character);
    if (digit == std::string_view::npos) return std::nullopt;
    pending = (pending << 6 | static_cast<std::uint32_t>(digit)) & 0xFFFF;
    pendingBits += 6;
    if (pendingBits < 8) continue;
    pendingBits -= 8;
    bytes.push_back(static_cast<std::uint8_t>(pending >> pendingBits));
  }
  // Bits that fill up the last digit carry nothing.
  if ((pending & ((1U << pendingBits) - 1)) != 0) return std::nullopt;
  return bytes;
}

}  // namespace kestro
