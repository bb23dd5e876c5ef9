#include "scene/Scene.h"

#include <algorithm>

namespace kestro {

bool Scene::isAbout(std::string_view kind) const {
  return !about || std::ranges::find(*about, kind) != about->end();
}

}  // namespace kestro
