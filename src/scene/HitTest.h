// Which element of a scripted application a point is on.
#pragma once

#include <optional>

#include "scene/SceneState.h"

namespace kestro {

// The deepest element at or below `root` whose frame (AXPosition and AXSize) holds the point; of
// siblings, the later one is in front. Absent when none does.
std::optional<ElementIndex> elementAtPoint(const SceneState& state, ElementIndex root, Point point);

}  // namespace kestro
