#include "scene/ElementLoader.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>

#include "scene/GeometryLoader.h"
#include "scene/PropertyListLoader.h"

namespace kestro {
namespace {

constexpr NumberRange hangRange{0, 86400};
constexpr std::array<std::string_view, 5> elementKeys{"id", "children", "settable", "actions",
                                                      "hitTest"};

bool isAttributeName(std::string_view key) {
  return key.starts_with("AX");
}

bool isElementKey(std::string_view key) {
  return isAttributeName(key) || std::ranges::find(elementKeys, key) != elementKeys.end();
}

// An object that stands where a value may stand is an element when it has a key of one.
bool isElement(const JsonNode& node) {
  bool found = false;
  node.forEachMember(
      [&](const std::string& key, const JsonNode&) { found = found || isElementKey(key); });
  return found;
}

std::string extended(const std::string& path, std::string_view step) {
  return path.empty() ? std::string(step) : fmt::format("{}/{}", path, step);
}

std::string unnamedElement(const JsonNode& node, const std::string& path) {
  const auto role = node.find("AXRole");
  return fmt::format("{} {}", role && role->isText() ? role->text() : "element", path);
}

std::vector<SceneAction> loadActions(const JsonNode& node) {
  std::vector<SceneAction> actions;
  node.forEachMember([&](const std::string& name, const JsonNode& description) {
    actions.push_back({name, description.isNull() ? "" : description.text()});
  });
  return actions;
}

AccessibilityError loadErrorCode(const JsonNode& node) {
  const std::int64_t code = node.integer(std::numeric_limits<std::int32_t>::min(),
                                         std::numeric_limits<std::int32_t>::max());
  if (code == 0) node.fail("0 is the code of success");
  return static_cast<AccessibilityError>(code);
}

}  // namespace

void ElementLoader::declareElements(const JsonNode& node) {
  if (node.isList()) {
    node.forEachItem([&](const JsonNode& item) { declareElements(item); });
  }
  if (!node.isObject()) return;
  if (const auto id = node.find("id")) {
    if (!scope_.insert(id->text()).second) id->fail(fmt::format("duplicate id '{}'", id->text()));
    ids_[id->text()] = addElement(id->text());
  }
  node.forEachMember([&](const std::string& key, const JsonNode& member) {
    if (key != "actions") declareElements(member);
  });
}

ElementIndex ElementLoader::loadApplicationElement(const JsonNode& node, std::size_t application) {
  const ProcessIdentifier process = state_.applications[application].description.processIdentifier;
  const ElementIndex element = makeElement(node, fmt::format("application {}", process));
  state_.elements[element].application = application;
  // Loading adds elements, so that a reference taken before would dangle.
  SceneElementContents contents = loadContents(node, element, "");
  state_.elements[element].update(std::move(contents));
  return element;
}

SceneElementContents ElementLoader::loadChanges(const JsonNode& node, ElementIndex element) {
  if (const auto id = node.expectObject().find("id")) id->fail("an element keeps its id");
  // The path of the changed element is not known any more, so that paths start at its name.
  return loadContents(node, element, state_.elements[element].handle.reference().description());
}

ElementIndex ElementLoader::find(const JsonNode& id) const {
  const auto found = ids_.find(id.text());
  if (found == ids_.end()) id.fail(fmt::format("no element has the id '{}'", id.text()));
  return found->second;
}

ElementIndex ElementLoader::loadElement(const JsonNode& node, ElementIndex parent,
                                        const std::string& path) {
  const ElementIndex element = makeElement(node, unnamedElement(node.expectObject(), path));
  state_.elements[element].parent = parent;
  state_.elements[element].application = state_.elements[parent].application;
  SceneElementContents contents = loadContents(node, element, path);
  state_.elements[element].update(std::move(contents));
  return element;
}

ElementIndex ElementLoader::makeElement(const JsonNode& node, const std::string& unnamed) {
  const auto id = node.find("id");
  return id ? find(*id) : addElement(unnamed);
}

ElementIndex ElementLoader::addElement(const std::string& description) {
  const ElementIndex index = state_.elements.size();
  state_.elements.emplace_back(makeSceneElementHandle(index, description));
  return index;
}

SceneElementContents ElementLoader::loadContents(const JsonNode& node, ElementIndex element,
                                                 const std::string& path) {
  SceneElementContents contents;
  node.forEachMember([&](const std::string& key, const JsonNode& value) {
    if (isAttributeName(key)) {
      contents.attributes.push_back({key, loadAnswer(value, element, extended(path, key))});
    } else if (!isElementKey(key)) {
      value.fail("unknown key");
    }
  });
  if (const auto children = node.find("children")) {
    contents.children = loadChildren(*children, element, path);
  }
  if (const auto settable = node.find("settable")) contents.settable = settable->texts();
  if (const auto actions = node.find("actions")) contents.actions = loadActions(*actions);
  if (const auto hitTest = node.find("hitTest")) {
    contents.hitTest = loadAnswer(*hitTest, element, extended(path, "hitTest"));
    const auto& hit = contents.hitTest->result.value;
    if (hit && !hit->get<UIElement>()) hitTest->failExpecting("an element, null or an error");
  }
  return contents;
}

std::vector<UIElement> ElementLoader::loadChildren(const JsonNode& node, ElementIndex parent,
                                                   const std::string& path) {
  std::vector<UIElement> children;
  node.forEachItem([&](const JsonNode& child) {
    const std::string childPath = extended(path, std::to_string(children.size()));
    children.push_back(loadElementOrReference(child, parent, childPath));
  });
  return children;
}

SceneValue ElementLoader::loadAnswer(const JsonNode& node, ElementIndex holder,
                                     const std::string& path) {
  if (node.has("hang")) return loadSlowAnswer(node, holder, path);
  if (node.isNull()) return {AccessibilityError::noValue};
  if (node.has("error")) {
    return {loadErrorCode(node.expectKeys({"error"}).member("error"))};
  }
  return {loadValue(node, holder, path)};
}

SceneValue ElementLoader::loadSlowAnswer(const JsonNode& node, ElementIndex holder,
                                         const std::string& path) {
  node.expectKeys({"hang", "value"});
  const Seconds hang(node.member("hang").number(hangRange));
  const auto value = node.find("value");
  if (!value) return {AccessibilityError::noValue, hang};
  if (value->has("hang")) value->fail("a slow answer cannot hold another");
  return {loadAnswer(*value, holder, path).result, hang};
}

AttributeValue ElementLoader::loadValue(const JsonNode& node, ElementIndex holder,
                                        const std::string& path) {
  if (node.isText()) return node.text();
  if (node.isBoolean()) return node.boolean();
  if (node.isInteger()) return node.integer();
  if (node.isNumber()) return node.number();
  if (node.isList()) return loadList(node, holder, path);
  if (node.isObject()) return loadObject(node, holder, path);
  node.failExpecting("a value");
}

AttributeValue ElementLoader::loadList(const JsonNode& node, ElementIndex holder,
                                       const std::string& path) {
  AttributeValue::List members;
  node.forEachItem([&](const JsonNode& member) {
    const std::string memberPath = extended(path, std::to_string(members.size()));
    members.push_back(loadValue(member, holder, memberPath));
  });
  return members;
}

AttributeValue ElementLoader::loadObject(const JsonNode& node, ElementIndex holder,
                                         const std::string& path) {
  if (node.has("ref") || isElement(node)) return loadElementOrReference(node, holder, path);
  node.expectKeys({"point", "size", "rect", "range", "url", "date", "data"});
  if (node.size() != 1) {
    node.fail("expected an element or one of ref, point, size, rect, range, url, date and data");
  }
  if (const auto box = node.find("point")) return loadPoint(*box);
  if (const auto box = node.find("size")) return loadSize(*box);
  if (const auto box = node.find("rect")) return loadRect(*box);
  if (const auto box = node.find("range")) return loadRange(*box);
  if (const auto box = node.find("url")) return WebAddress{box->text()};
  if (const auto box = node.find("date")) return loadDate(*box);
  return loadBase64(node.member("data"));
}

UIElement ElementLoader::loadElementOrReference(const JsonNode& node, ElementIndex holder,
                                                const std::string& path) {
  const bool isReference = node.has("ref");
  const ElementIndex element =
      isReference ? find(node.expectKeys({"ref"}).member("ref")) : loadElement(node, holder, path);
  return state_.elements[element].handle;
}

}  // namespace kestro
