#include "scene/JsonNode.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestro {
namespace {

// Beyond any screen, and still exact where code above turns coordinates into whole numbers.
constexpr NumberRange geometryRange{-1e7, 1e7};

std::string_view typeName(const SceneJson& json) {
  switch (json.type()) {
    case SceneJson::value_t::null:
      return "null";
    case SceneJson::value_t::string:
      return "a text";
    case SceneJson::value_t::boolean:
      return "true or false";
    case SceneJson::value_t::array:
      return "a list";
    case SceneJson::value_t::object:
      return "an object";
    default:
      return "a number";
  }
}

bool fitsInteger(const SceneJson& json) {
  if (json.is_number_unsigned()) {
    return json.get<std::uint64_t>() <=
           static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  }
  return json.is_number_integer();
}

}  // namespace

void JsonNode::fail(std::string_view reason) const {
  throw failureAt(pointer(), reason);
}

void JsonNode::failExpecting(std::string_view expected) const {
  fail(fmt::format("expected {}, found {}", expected, typeName(json_)));
}

std::string JsonNode::pointer() const {
  if (!parent_) return "";
  const std::string token = parent_->isObject() ? pointerToken(key_) : fmt::format("{}", index_);
  return parent_->pointer() + "/" + token;
}

bool JsonNode::isInteger() const {
  return fitsInteger(json_);
}

const std::string& JsonNode::text() const {
  if (!isText()) failExpecting("a text");
  return json_.get_ref<const std::string&>();
}

bool JsonNode::boolean() const {
  if (!isBoolean()) failExpecting("true or false");
  return json_.get<bool>();
}

double JsonNode::number() const {
  if (!isNumber()) failExpecting("a number");
  const auto value = json_.get<double>();
  if (!std::isfinite(value)) fail("expected a finite number");
  return value;
}

double JsonNode::number(NumberRange range) const {
  const double value = number();
  if (value < range.least || value > range.greatest) {
    fail(fmt::format("expected a number from {} to {}, found {}", range.least, range.greatest,
                     value));
  }
  return value;
}

std::int64_t JsonNode::integer() const {
  if (!isNumber()) failExpecting("a whole number");
  if (!isInteger()) fail(fmt::format("expected a whole number, found {}", json_.dump()));
  return json_.get<std::int64_t>();
}

std::int64_t JsonNode::integer(std::int64_t least, std::int64_t greatest) const {
  const std::int64_t value = integer();
  if (value < least || value > greatest) {
    fail(fmt::format("expected a whole number from {} to {}, found {}", least, greatest, value));
  }
  return value;
}

std::vector<double> JsonNode::numbers(std::size_t count) const {
  expectList();
  if (size() != count) fail(fmt::format("expected {} numbers, found {}", count, size()));
  std::vector<double> values;
  forEachItem([&](const JsonNode& value) { values.push_back(value.number(geometryRange)); });
  return values;
}

std::vector<std::string> JsonNode::texts() const {
  std::vector<std::string> values;
  forEachItem([&](const JsonNode& value) { values.push_back(value.text()); });
  return values;
}

const JsonNode& JsonNode::expectList() const {
  if (!isList()) failExpecting("a list");
  return *this;
}

const JsonNode& JsonNode::expectObject() const {
  if (!isObject()) failExpecting("an object");
  return *this;
}

const JsonNode& JsonNode::expectKeys(std::span<const std::string_view> known) const {
  forEachMember([&](const std::string& key, const JsonNode& value) {
    if (std::ranges::find(known, key) == known.end()) value.fail("unknown key");
  });
  return *this;
}

std::optional<JsonNode> JsonNode::find(std::string_view key) const {
  expectObject();
  const auto& members = json_.get_ref<const SceneJson::object_t&>();
  auto found =
      std::ranges::find_if(members, [&](const auto& member) { return member.first == key; });
  if (found == members.end()) return std::nullopt;
  return JsonNode(found->second, this, found->first, 0);
}

JsonNode JsonNode::member(std::string_view key) const {
  auto found = find(key);
  if (!found) fail(fmt::format("'{}' is missing", key));
  return *found;
}

JsonNode JsonNode::item(std::size_t index) const {
  return {json_[index], this, {}, index};
}

}  // namespace kestro
