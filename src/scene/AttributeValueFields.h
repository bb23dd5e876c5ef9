// Values of attributes as transcripts show them.
#pragma once

#include "foundation/PropertyList.h"
#include "platform/AttributeValue.h"

namespace kestro {

// Boxes and addresses in the form that a scene gives them; an element as the text that names it.
PropertyList transcriptValue(const AttributeValue& value);

}  // namespace kestro
