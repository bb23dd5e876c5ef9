#include "transcript/JsonLinesWriter.h"

#include <cmath>

#include "foundation/PropertyListJson.h"

namespace kestro {
namespace {

// Whole seconds as an integer, others to the millisecond.
nlohmann::ordered_json timeJson(Seconds time) {
  constexpr std::int64_t millisecondsPerSecond = 1000;
  const std::int64_t milliseconds = std::llround(time.count() * millisecondsPerSecond);
  if (milliseconds % millisecondsPerSecond == 0) return milliseconds / millisecondsPerSecond;
  return static_cast<double>(milliseconds) / millisecondsPerSecond;
}

}  // namespace

void JsonLinesWriter::write(Seconds time, std::string_view kind,
                            const PropertyListDictionary& fields) {
  nlohmann::ordered_json line;
  line["t"] = timeJson(time);
  line["kind"] = kind;
  for (const PropertyListMember& field : fields) {
    line[field.key] = propertyListJson(field.value);
  }
  stream_ << compactJson(line) << std::endl;
}

}  // namespace kestro
