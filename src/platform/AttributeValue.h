// Elements of other applications and the values of their attributes, as the accessibility interface
// hands them over. Plain value types.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/Geometry.h"
#include "foundation/PropertyList.h"

namespace kestro {

// What a backend knows an element by. Only the backend that made one looks inside.
class UIElementReference {
 public:
  virtual ~UIElementReference() = default;
  // Only ever asked about references of the same backend.
  virtual bool isEqual(const UIElementReference& other) const = 0;
  virtual std::size_t hash() const = 0;
  // A text that names the element in diagnostics; stable while the element lives.
  virtual std::string description() const = 0;
};

// The handle of one element of another application. Cheap to copy; holding one costs no request and
// keeps nothing alive in the other application. Two handles are equal when they name the same
// element, wherever they were obtained.
class UIElement {
 public:
  explicit UIElement(std::shared_ptr<const UIElementReference> reference)
      : reference_(std::move(reference)) {}

  const UIElementReference& reference() const { return *reference_; }
  std::size_t hash() const { return reference_->hash(); }
  bool operator==(const UIElement& other) const {
    return reference_ == other.reference_ || reference_->isEqual(*other.reference_);
  }

 private:
  std::shared_ptr<const UIElementReference> reference_;
};

// A web address, in its absolute form.
struct WebAddress {
  std::string absoluteString;
  bool operator==(const WebAddress&) const = default;
};

class AttributeValue {
 public:
  using List = std::vector<AttributeValue>;
  using Variant = std::variant<std::string, bool, std::int64_t, double, WebAddress, Date, Data,
                               Point, Size, Rect, Range, UIElement, List>;

  AttributeValue(std::string value) : value_(std::move(value)) {}
  AttributeValue(std::string_view value) : value_(std::string(value)) {}
  AttributeValue(const char* value) : value_(std::string(value)) {}
  AttributeValue(bool value) : value_(value) {}
  AttributeValue(std::int64_t value) : value_(value) {}
  AttributeValue(double value) : value_(value) {}
  AttributeValue(WebAddress value) : value_(std::move(value)) {}
  AttributeValue(Date value) : value_(value) {}
  AttributeValue(Data value) : value_(std::move(value)) {}
  AttributeValue(Point value) : value_(value) {}
  AttributeValue(Size value) : value_(value) {}
  AttributeValue(Rect value) : value_(value) {}
  AttributeValue(Range value) : value_(value) {}
  AttributeValue(UIElement value) : value_(std::move(value)) {}
  AttributeValue(List value) : value_(std::move(value)) {}

  const Variant& variant() const { return value_; }
  // The value when it has exactly this type, else null.
  template <class Type>
  const Type* get() const {
    return std::get_if<Type>(&value_);
  }
  bool operator==(const AttributeValue&) const = default;

 private:
  Variant value_;
};

}  // namespace kestro

template <>
struct std::hash<kestro::UIElement> {
  std::size_t operator()(const kestro::UIElement& element) const { return element.hash(); }
};
