#include "foundation/TextCase.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace kestro {

std::string lowercased(std::string_view text) {
  auto characters = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  std::string result;
  characters.toLower(icu::Locale::getRoot()).toUTF8String(result);
  return result;
}

bool hasLetterOrDigit(std::string_view text) {
  const auto characters = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  for (std::int32_t index = 0; index < characters.length();
       index = characters.moveIndex32(index, 1)) {
    if (u_isalnum(characters.char32At(index))) return true;
  }
  return false;
}

}  // namespace kestro
