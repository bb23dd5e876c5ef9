// Values of attributes as transcripts show them.
#pragma once

#include "platform/AttributeValue.h"
#include "platform/PropertyList.h"

namespace kestro {

// Boxes and addresses in the form that a scene gives them; an element as the text that names it.
PropertyList transcriptValue(const AttributeValue& value);

}  // namespace kestro
