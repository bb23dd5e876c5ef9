// One value of a scene's JSON together with the place where it stands, read with checks: what is
// not as expected ends loading with a message that names the place. Private to this folder.
#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "scene/SceneJson.h"

namespace kestro {

struct NumberRange {
  double least;
  double greatest;
};

// Valid while the document and the node that it was obtained from are.
class JsonNode {
 public:
  explicit JsonNode(const SceneJson& root) : json_(root) {}

  // Ends loading.
  [[noreturn]] void fail(std::string_view reason) const;
  [[noreturn]] void failExpecting(std::string_view expected) const;

  bool isNull() const { return json_.is_null(); }
  bool isText() const { return json_.is_string(); }
  bool isNumber() const { return json_.is_number(); }
  bool isBoolean() const { return json_.is_boolean(); }
  bool isList() const { return json_.is_array(); }
  bool isObject() const { return json_.is_object(); }
  bool isInteger() const;

  const std::string& text() const;
  bool boolean() const;
  double number() const;
  double number(NumberRange range) const;
  std::int64_t integer() const;
  std::int64_t integer(std::int64_t least, std::int64_t greatest) const;
  // A list of exactly `count` numbers, each within what a screen or a text may have.
  std::vector<double> numbers(std::size_t count) const;
  std::vector<std::string> texts() const;
  const JsonNode& expectList() const;
  const JsonNode& expectObject() const;

  // The members that an object may have; any other ends loading.
  const JsonNode& expectKeys(std::span<const std::string_view> known) const;
  const JsonNode& expectKeys(std::initializer_list<std::string_view> known) const {
    return expectKeys(std::span(known.begin(), known.size()));
  }
  bool has(std::string_view key) const { return json_.is_object() && json_.contains(key); }
  std::size_t size() const { return json_.size(); }
  std::optional<JsonNode> find(std::string_view key) const;
  // As `find`, for a member that must be there.
  JsonNode member(std::string_view key) const;
  JsonNode item(std::size_t index) const;

  template <std::invocable<const std::string&, const JsonNode&> Visitor>
  void forEachMember(Visitor visit) const;
  template <std::invocable<const JsonNode&> Visitor>
  void forEachItem(Visitor visit) const;

 private:
  JsonNode(const SceneJson& json, const JsonNode* parent, std::string_view key, std::size_t index)
      : json_(json), parent_(parent), key_(key), index_(index) {}

  std::string pointer() const;

  const SceneJson& json_;
  const JsonNode* parent_ = nullptr;
  std::string_view key_;   // in an object
  std::size_t index_ = 0;  // in a list
};

template <std::invocable<const std::string&, const JsonNode&> Visitor>
void JsonNode::forEachMember(Visitor visit) const {
  expectObject();
  for (const auto& [key, value] : json_.get_ref<const SceneJson::object_t&>()) {
    visit(key, JsonNode(value, this, key, 0));
  }
}

template <std::invocable<const JsonNode&> Visitor>
void JsonNode::forEachItem(Visitor visit) const {
  expectList();
  for (std::size_t index = 0; index < json_.size(); ++index) {
    visit(item(index));
  }
}

}  // namespace kestro
