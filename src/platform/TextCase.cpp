#include "platform/TextCase.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace kestro {

std::string lowercased(std::string_view text) {
  auto characters = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  std::string result;
  characters.toLower(icu::Locale::getRoot()).toUTF8String(result);
  return result;
}

}  // namespace kestro
