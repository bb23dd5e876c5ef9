#include "scene/SceneJson.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace kestro {
namespace {

// Deeper than any application's tree, and shallow enough for the functions that walk it.
constexpr std::size_t deepestNesting = 256;

std::string placeOf(std::size_t offset, std::string_view text) {
  const std::string_view before = text.substr(0, std::min(offset, text.size()));
  const auto line = std::ranges::count(before, '\n') + 1;
  const std::size_t lineStart =
      before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
  return fmt::format("{}:{}", line, std::max<std::size_t>(1, before.size() - lineStart));
}

// The library's message without its own prefix, position and quotation of the bytes it read last,
// which may be no UTF-8.
std::string reasonOf(std::string message) {
  if (const auto prefix = message.find("] "); prefix != std::string::npos) {
    message.erase(0, prefix + 2);
  }
  if (const auto colon = message.find(": "); message.starts_with("parse error")) {
    message.erase(0, colon == std::string::npos ? 0 : colon + 2);
  }
  constexpr std::string_view lastRead = "; last read:";
  if (const auto found = message.find(lastRead); found != std::string::npos) {
    const auto expectation = message.rfind("; expected ");
    const std::string expected =
        expectation != std::string::npos && expectation > found ? message.substr(expectation) : "";
    message = message.substr(0, found) + expected;
  }
  return message;
}

// Builds the document while it is parsed; stops at the first fault.
class SceneJsonBuilder final : public nlohmann::json_sax<SceneJson> {
 public:
  explicit SceneJsonBuilder(std::string_view text) : text_(text) {}

  bool null() override { return add(nullptr); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override { return add(value); }
  bool number_float(number_float_t value, const string_t&) override { return add(value); }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t&) override { return false; }

  bool start_object(std::size_t) override { return open(SceneJson::object()); }
  bool end_object() override { return close(); }
  bool start_array(std::size_t) override { return open(SceneJson::array()); }
  bool end_array() override { return close(); }

  bool key(string_t& value) override {
    if (!seenKeys_.back().insert(value).second) {
      return fail(pointer() + "/" + pointerToken(value), "duplicate key");
    }
    keys_.back() = std::move(value);
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception& error) override {
    failure_ = fmt::format(":{}: {}", placeOf(position, text_), reasonOf(error.what()));
    return false;
  }

  SceneJson takeDocument() && { return std::move(document_); }
  const std::string& failure() const { return failure_; }

 private:
  using Members = SceneJson::object_t::Container;

  bool add(SceneJson value) {
    place(std::move(value));
    return true;
  }

  bool open(SceneJson container) {
    if (open_.size() == deepestNesting) {
      return fail("", fmt::format("nested more than {} levels deep", deepestNesting));
    }
    SceneJson& placed = place(std::move(container));
    open_.push_back(&placed);
    keys_.emplace_back();
    seenKeys_.emplace_back();
    return true;
  }

  bool close() {
    open_.pop_back();
    keys_.pop_back();
    seenKeys_.pop_back();
    return true;
  }

  // Containers on the stack stay where they are: only the innermost one grows.
  SceneJson& place(SceneJson value) {
    if (open_.empty()) return document_ = std::move(value);
    SceneJson& container = *open_.back();
    if (container.is_object()) {
      // Appended, without the object's own search for a key that is known to be new: it would look
      // at every member.
      auto& members = static_cast<Members&>(container.get_ref<SceneJson::object_t&>());
      return members.emplace_back(keys_.back(), std::move(value)).second;
    }
    container.push_back(std::move(value));
    return container.back();
  }

  bool fail(std::string_view pointer, std::string_view reason) {
    failure_ = failureAt(pointer, reason).what();
    return false;
  }

  std::string pointer() const {
    std::string pointer;
    for (std::size_t level = 0; level + 1 < open_.size(); ++level) {
      pointer += '/';
      pointer += open_[level]->is_object() ? pointerToken(keys_[level])
                                           : fmt::format("{}", open_[level]->size() - 1);
    }
    return pointer;
  }

  std::string_view text_;
  SceneJson document_;
  std::vector<SceneJson*> open_;   // from the root inwards
  std::vector<std::string> keys_;  // of each open object, the member that is being read
  std::vector<std::unordered_set<std::string>> seenKeys_;
  std::string failure_;
};

}  // namespace

SceneJson parseSceneJson(std::string_view text) {
  SceneJsonBuilder builder(text);
  const bool isComplete =
      SceneJson::sax_parse(text.begin(), text.end(), &builder, SceneJson::input_format_t::json,
                           /*strict=*/true, /*ignore_comments=*/true);
  if (!isComplete) throw SceneLoadFailure(builder.failure());
  return std::move(builder).takeDocument();
}

SceneLoadFailure failureAt(std::string_view pointer, std::string_view reason) {
  if (pointer.empty()) return SceneLoadFailure(fmt::format(": {}", reason));
  return SceneLoadFailure(fmt::format(": {}: {}", pointer, reason));
}

std::string pointerToken(std::string_view key) {
  std::string token;
  for (const char character : key) {
    if (character == '~') {
      token += "~0";
    } else if (character == '/') {
      token += "~1";
    } else {
      token += character;
    }
  }
  return token;
}

}  // namespace kestro
