// What the helper did, as events that someone outside the process could observe, in order. Kinds
// and fields are described in docs/scenes.md.
#pragma once

#include <string_view>

#include "foundation/PropertyList.h"

namespace kestro {

class Transcript {
 public:
  virtual ~Transcript() = default;

  // False when nobody listens: callers may then save themselves the work of building fields.
  virtual bool isActive() const = 0;
  virtual void record(std::string_view kind, PropertyListDictionary fields) = 0;
};

}  // namespace kestro
