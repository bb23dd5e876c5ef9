// Bytes as texts: base64 with the standard alphabet and padding (RFC 4648, section 4).
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/PropertyList.h"

namespace kestro {

std::string base64(const Data& bytes);

// Absent when the text is not in exactly that form.
std::optional<Data> parseBase64(std::string_view text);

}  // namespace kestro
