// A value shared by reference: copies of a box see each other's changes. Boxes compare and hash by
// value.
#pragma once

#include <fmt/format.h>

#include <functional>
#include <memory>
#include <string>

namespace kestro {

template <class Value>
class Box {
 public:
  explicit Box(Value value) : value_(std::make_shared<Value>(std::move(value))) {}

  Value& value() const { return *value_; }
  std::string description() const { return fmt::format("Box({})", *value_); }
  bool operator==(const Box& other) const { return *value_ == *other.value_; }

 private:
  std::shared_ptr<Value> value_;
};

}  // namespace kestro

template <class Value>
struct std::hash<kestro::Box<Value>> {
  std::size_t operator()(const kestro::Box<Value>& box) const {
    return std::hash<Value>{}(box.value());
  }
};
