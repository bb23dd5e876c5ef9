#include "scene/AttributeValueFields.h"

namespace kestro {
namespace {

PropertyListDictionary box(const char* name, PropertyListArray numbers) {
  return {{name, std::move(numbers)}};
}

struct TranscriptValue {
  PropertyList operator()(const WebAddress& address) const {
    return PropertyListDictionary{{"url", address.absoluteString}};
  }
  PropertyList operator()(const Point& point) const { return box("point", {point.x, point.y}); }
  PropertyList operator()(const Size& size) const { return box("size", {size.width, size.height}); }
  PropertyList operator()(const Rect& rect) const {
    return box("rect", {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
  }
  PropertyList operator()(const Range& range) const {
    return box("range", {range.location, range.length});
  }
  PropertyList operator()(const UIElement& element) const {
    return element.reference().description();
  }
  PropertyList operator()(const AttributeValue::List& list) const {
    PropertyListArray members;
    for (const AttributeValue& member : list) {
      members.push_back(transcriptValue(member));
    }
    return members;
  }
  template <class Plain>
  PropertyList operator()(const Plain& plain) const {
    return plain;
  }
};

}  // namespace

PropertyList transcriptValue(const AttributeValue& value) {
  return std::visit(TranscriptValue{}, value.variant());
}

}  // namespace kestro
