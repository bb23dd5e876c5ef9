// Boxes of numbers in a scene. Private to this folder.
#pragma once

#include "foundation/Geometry.h"
#include "scene/JsonNode.h"

namespace kestro {

Point loadPoint(const JsonNode& node);
Size loadSize(const JsonNode& node);
// [x, y, width, height]
Rect loadRect(const JsonNode& node);
// [location, length]
Range loadRange(const JsonNode& node);

}  // namespace kestro
