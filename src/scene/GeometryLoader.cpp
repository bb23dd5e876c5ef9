#include "scene/GeometryLoader.h"

namespace kestro {

Point loadPoint(const JsonNode& node) {
  const auto numbers = node.numbers(2);
  return {numbers[0], numbers[1]};
}

Size loadSize(const JsonNode& node) {
  const auto numbers = node.numbers(2);
  return {numbers[0], numbers[1]};
}

Rect loadRect(const JsonNode& node) {
  const auto numbers = node.numbers(4);
  return {{numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
}

Range loadRange(const JsonNode& node) {
  constexpr std::int64_t limit = std::int64_t{1} << 53;
  if (node.expectList().size() != 2) node.fail("expected a location and a length");
  return {node.item(0).integer(-limit, limit), node.item(1).integer(-limit, limit)};
}

}  // namespace kestro
