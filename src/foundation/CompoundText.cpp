#include "foundation/CompoundText.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace kestro {
namespace {

constexpr char escape = '\x1b';
constexpr std::string_view replacement = "\uFFFD";

struct ConverterDeleter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

std::string converted(std::string_view bytes, const char* encoding) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, ConverterDeleter> converter(ucnv_open(encoding, &error));
  if (U_FAILURE(error)) return std::string(replacement);
  icu::UnicodeString text(bytes.data(), static_cast<std::int32_t>(bytes.size()), converter.get(),
                          error);
  // What some encodings give for half a character.
  text.findAndReplace(icu::UnicodeString(u'\x1a'), icu::UnicodeString(u'\uFFFD'));
  std::string result;
  if (U_SUCCESS(error)) text.toUTF8String(result);
  return U_SUCCESS(error) ? result : std::string(replacement);
}

// A character set: the encoding that has it, and what stands before each character there.
struct CharacterSet {
  std::string_view designation;  // behind the escape, without the half that it goes to
  const char* encoding;          // with the character's bytes above 0x7f
  std::string_view prefix = {};
  bool isAscii = false;
};

// The final bytes are those of the International Register of coded character sets.
constexpr std::array<CharacterSet, 24> characterSets{{
    {"(B", "US-ASCII", "", true},
    {"(J", "US-ASCII", "", true},  // Roman of JIS X 0201: two signs differ
    {"(I", "EUC-JP", "\x8e"},      // Katakana
    {"-A", "ISO-8859-1"},
    {"-B", "ISO-8859-2"},
    {"-C", "ISO-8859-3"},
    {"-D", "ISO-8859-4"},
    {"-F", "ISO-8859-7"},
    {"-G", "ISO-8859-6"},
    {"-H", "ISO-8859-8"},
    {"-L", "ISO-8859-5"},
    {"-M", "ISO-8859-9"},
    {"-T", "TIS-620"},
    {"-V", "ISO-8859-10"},
    {"-Y", "ISO-8859-13"},
    {"-_", "ISO-8859-14"},
    {"-b", "ISO-8859-15"},
    {"-f", "ISO-8859-16"},
    {"$(A", "GB2312"},
    {"$(B", "EUC-JP"},
    {"$(C", "EUC-KR"},
    {"$(D", "EUC-JP", "\x8f"},
    {"$(G", "EUC-TW"},
    {"$(H", "EUC-TW", "\x8e\xa2"},
}};

const CharacterSet* setOf(std::string designation) {
  // ")" brings to the right half what "(" brings to the left one.
  std::ranges::replace(designation, ')', '(');
  const auto found = std::ranges::find(characterSets, designation, &CharacterSet::designation);
  return found == characterSets.end() ? nullptr : &*found;
}

class Decoder {
 public:
  explicit Decoder(std::string_view text) : rest_(text) {}

  std::string decode() {
    while (!rest_.empty()) {
      if (rest_.front() == escape) {
        readEscape();
      } else if (rest_.front() == '\x9b') {
        skipDirection();
      } else {
        readRun();
      }
    }
    return std::move(result_);
  }

 private:
  static bool isRight(char byte) { return static_cast<unsigned char>(byte) >= 0x80; }

  std::string_view take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  // Up to the next escape, the bytes of one half.
  void readRun() {
    const bool right = isRight(rest_.front());
    const auto end = std::ranges::find_if(rest_, [&](char byte) {
      return byte == escape || byte == '\x9b' || isRight(byte) != right;
    });
    const auto bytes = take(static_cast<std::size_t>(end - rest_.begin()));
    append(bytes, right ? right_ : left_);
  }

  void append(std::string_view bytes, const CharacterSet* set) {
    if (!set) {
      result_ += replacement;
    } else if (set->isAscii) {
      result_ += bytes;
    } else {
      result_ += converted(encoded(bytes, *set), set->encoding);
    }
  }

  // As the encoding has them, which keeps the lower half for ASCII.
  static std::string encoded(std::string_view bytes, const CharacterSet& set) {
    const std::size_t length = set.designation.starts_with('$') ? 2 : 1;
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
      const char byte = bytes[index];
      if (byte == ' ' || static_cast<unsigned char>(byte) < 0x20) {
        text += byte;
        continue;
      }
      if (index % length == 0) text += set.prefix;
      text += static_cast<char>(static_cast<unsigned char>(byte) | 0x80U);
    }
    return text;
  }

  void readEscape() {
    take(1);
    if (rest_.starts_with("%G")) return readUtf8();
    if (rest_.starts_with("%/")) return readExtendedSegment();
    // The escape: signs from a blank to "/", and one beyond them.
    const auto final = std::ranges::find_if(
        rest_, [](char byte) { return static_cast<unsigned char>(byte) >= 0x30; });
    if (final == rest_.end()) {
      rest_ = {};
      return;
    }
    const std::string designation(take(static_cast<std::size_t>(final - rest_.begin()) + 1));
    if (designation.size() < 2 || designation == "%@") return;
    const bool right = designation.starts_with('-') || designation.find(')') != std::string::npos;
    (right ? right_ : left_) = setOf(designation);
  }

  void readUtf8() {
    take(2);
    constexpr std::string_view end = "\x1b%@";
    const std::size_t length = std::min(rest_.find(end), rest_.size());
    result_ += converted(take(length), "UTF-8");
    take(end.size());
  }

  // "%/", a byte for the number of bytes a character, two for the length, the encoding's name, 2.
  void readExtendedSegment() {
    const std::string_view head = take(5);
    if (head.size() < 5 || !isRight(head[3]) || !isRight(head[4])) {
      result_ += replacement;
      return;
    }
    const auto length = (static_cast<unsigned char>(head[3]) - 0x80U) * 128U +
                        (static_cast<unsigned char>(head[4]) - 0x80U);
    const std::string_view segment = take(length);
    const std::size_t nameLength = segment.find('\2');
    if (nameLength == std::string_view::npos) {
      result_ += replacement;
      return;
    }
    result_ += converted(segment.substr(nameLength + 1),
                         std::string(segment.substr(0, nameLength)).c_str());
  }

  void skipDirection() {
    take(1);
    const std::size_t end = rest_.find(']');
    take(end == std::string_view::npos || end > 1 ? 0 : end + 1);
  }

  std::string_view rest_;
  std::string result_;
  const CharacterSet* left_ = setOf("(B");
  const CharacterSet* right_ = setOf("-A");
};

}  // namespace

std::string utf8FromCompoundText(std::string_view text) {
  return Decoder(text).decode();
}

}  // namespace kestro
