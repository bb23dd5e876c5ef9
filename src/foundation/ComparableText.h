// Texts as comparisons see them. What the desktop says of one thing comes in several writings: with
// direction marks or without, accented letters as one character or as two. A comparison of two such
// texts is one of their comparable forms; what is reported is the text as it was read.
#pragma once

#include <string>
#include <string_view>

namespace kestro {

// The text in Unicode's composed form (NFC), without characters that show nothing: direction marks
// and other formatting characters, control characters but tab and line feed, variation selectors.
std::string comparableText(std::string_view text);

// The comparable form of the text in lower case.
std::string caselessText(std::string_view text);

// Whether the texts have one comparable form.
bool isSameText(std::string_view left, std::string_view right);

// The text without what has the comparable form of the suffix at its end; else unchanged. What is
// left is as it was read.
std::string removingSameSuffix(std::string_view text, std::string_view suffix);

}  // namespace kestro
