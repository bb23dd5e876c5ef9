#include "foundation/TextCase.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace kestro {
namespace {

icu::UnicodeString charactersOf(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

}  // namespace

std::string lowercased(std::string_view text) {
  std::string result;
  charactersOf(text).toLower(icu::Locale::getRoot()).toUTF8String(result);
  return result;
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool hasLetterOrDigit(std::string_view text) {
  const auto characters = charactersOf(text);
  for (std::int32_t index = 0; index < characters.length();
       index = characters.moveIndex32(index, 1)) {
    if (u_isalnum(characters.char32At(index))) return true;
  }
  return false;
}

bool isIcon(std::string_view text) {
  const auto characters = charactersOf(text);
  for (std::int32_t index = 0; index < characters.length();
       index = characters.moveIndex32(index, 1)) {
    const UChar32 character = characters.char32At(index);
    if (u_charType(character) != U_PRIVATE_USE_CHAR && !u_isUWhiteSpace(character)) return false;
  }
  return true;
}

}  // namespace kestro
