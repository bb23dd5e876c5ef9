// Property lists as JSON, as transcripts and reports write them. Private to the folders that read
// or write JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "foundation/PropertyList.h"

namespace kestro {

// Dates become ISO 8601 texts in UTC, data base64, numbers that JSON does not have null.
nlohmann::ordered_json propertyListJson(const PropertyList& value);
nlohmann::ordered_json propertyListJson(const PropertyListDictionary& dictionary);

// One line of JSON. Bytes that are not UTF-8 become U+FFFD.
std::string compactJson(const nlohmann::ordered_json& json);

}  // namespace kestro
