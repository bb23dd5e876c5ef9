#include "linux/accessibility/AtspiReader.h"

#include <algorithm>
#include <cmath>

#include "linux/accessibility/AtspiMessages.h"

namespace kestro {
namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* applicationInterface = "org.a11y.atspi.Application";
constexpr const char* componentInterface = "org.a11y.atspi.Component";
constexpr const char* documentInterface = "org.a11y.atspi.Document";
constexpr const char* textInterface = "org.a11y.atspi.Text";
constexpr const char* selectionInterface = "org.a11y.atspi.Selection";

constexpr int mostListChildren = 250;
// More than any sample can pay for; an application may claim any number.
constexpr int mostSelectedChildren = SampleBudget::usualRequests;
// A text of an editor may be a whole book; nothing here looks at more than its beginning.
constexpr std::int32_t longestText = 16'384;

bool mayBeLong(AtspiRole role) {
  return role == AtspiRole::list || role == AtspiRole::table || role == AtspiRole::tree ||
         role == AtspiRole::treeTable || role == AtspiRole::listBox;
}

// A set of small numbers, as the bits of a list of words.
void appendBits(sd_bus_message* message, const std::vector<unsigned>& numbers, std::size_t words) {
  constexpr unsigned bitsOfWord = 32;
  std::vector<std::uint32_t> set(words, 0);
  for (const unsigned number : numbers) {
    if (number < bitsOfWord * words) set[number / bitsOfWord] |= 1U << (number % bitsOfWord);
  }
  sd_bus_message_append_array(message, 'i', set.data(), set.size() * sizeof(std::uint32_t));
}

template <class Enumeration>
std::vector<unsigned> numbersOf(const std::vector<Enumeration>& values) {
  std::vector<unsigned> numbers;
  numbers.reserve(values.size());
  for (const Enumeration value : values)
    numbers.push_back(static_cast<unsigned>(value));
  return numbers;
}

// States, attributes, roles and interfaces, each with how they match. For attributes and roles that
// is ANY, which lets everything through where there are none, for interfaces ALL.
void appendMatchArguments(sd_bus_message* message, const AtspiMatchRule& rule, std::int32_t most) {
  constexpr std::int32_t matchAll = 1;
  constexpr std::int32_t matchAny = 2;
  constexpr std::uint32_t documentOrder = 1;
  constexpr std::size_t stateWords = 2;
  constexpr std::size_t roleWords = 4;
  sd_bus_message_open_container(message, 'r', "aiia{ss}iaiiasib");
  appendBits(message, numbersOf(rule.states), stateWords);
  sd_bus_message_append(message, "i", matchAll);
  sd_bus_message_open_container(message, 'a', "{ss}");
  for (const auto& [name, value] : rule.attributes) {
    sd_bus_message_append(message, "{ss}", name.c_str(), value.c_str());
  }
  sd_bus_message_close_container(message);
  sd_bus_message_append(message, "i", matchAny);
  appendBits(message, numbersOf(rule.roles), rule.roles.empty() ? 0 : roleWords);
  sd_bus_message_append(message, "iasib", matchAny, 0, matchAll, 0);
  sd_bus_message_close_container(message);
  constexpr int isDeep = 1;
  sd_bus_message_append(message, "uib", documentOrder, most, isDeep);
}

}  // namespace

AtspiReader::Facts& AtspiReader::facts(const AtspiObject& object) {
  const std::uint64_t generation = generation_.current();
  if (factsOf_ != generation) {
    facts_.clear();
    connection_.processArrived();
    factsOf_ = generation;
  }
  return facts_[object];
}

template <class Value, class Read>
AccessibilityResult<Value> AtspiReader::kept(const AtspiObject& object, Kept<Value> Facts::*fact,
                                             Read read) {
  if (const auto& known = facts(object).*fact) return *known;
  AccessibilityResult<Value> result = read();
  facts(object).*fact = result;
  return result;
}

MessagePointer AtspiReader::propertyRequest(const AtspiObject& object, const char* interface,
                                            const char* property) {
  auto request = connection_.request(object, "org.freedesktop.DBus.Properties", "Get");
  if (request) sd_bus_message_append(request.get(), "ss", interface, property);
  return request;
}

AtspiReply AtspiReader::property(const AtspiObject& object, const char* interface,
                                 const char* name) {
  return connection_.call(propertyRequest(object, interface, name));
}

AtspiReply AtspiReader::call(const AtspiObject& object, const char* interface, const char* member) {
  return connection_.call(connection_.request(object, interface, member));
}

AccessibilityResult<AtspiRole> AtspiReader::role(const AtspiObject& object) {
  return kept(object, &Facts::role,
              [&] { return roleOf(call(object, accessibleInterface, "GetRole")); });
}

AccessibilityResult<AtspiStates> AtspiReader::states(const AtspiObject& object) {
  return kept(object, &Facts::states,
              [&] { return statesOf(call(object, accessibleInterface, "GetState")); });
}

AccessibilityResult<std::string> AtspiReader::name(const AtspiObject& object) {
  return kept(object, &Facts::name,
              [&] { return textPropertyOf(property(object, accessibleInterface, "Name")); });
}

AccessibilityResult<std::string> AtspiReader::description(const AtspiObject& object) {
  return kept(object, &Facts::description,
              [&] { return textPropertyOf(property(object, accessibleInterface, "Description")); });
}

AccessibilityResult<std::string> AtspiReader::helpText(const AtspiObject& object) {
  return kept(object, &Facts::helpText,
              [&] { return textPropertyOf(property(object, accessibleInterface, "HelpText")); });
}

AccessibilityResult<std::string> AtspiReader::localizedRoleName(const AtspiObject& object) {
  return kept(object, &Facts::localizedRoleName,
              [&] { return textOf(call(object, accessibleInterface, "GetLocalizedRoleName")); });
}

AccessibilityResult<AtspiObject> AtspiReader::parent(const AtspiObject& object) {
  return kept(object, &Facts::parent,
              [&] { return objectPropertyOf(property(object, accessibleInterface, "Parent")); });
}

AccessibilityResult<std::int32_t> AtspiReader::childCount(const AtspiObject& object) {
  return kept(object, &Facts::childCount, [&] {
    return integerPropertyOf(property(object, accessibleInterface, "ChildCount"));
  });
}

AccessibilityResult<std::vector<AtspiObject>> AtspiReader::children(const AtspiObject& object) {
  return kept(object, &Facts::children, [&] { return readChildren(object); });
}

AccessibilityResult<std::vector<AtspiObject>> AtspiReader::readChildren(const AtspiObject& object) {
  // Who walks a tree has read the role before; nobody is asked for it here.
  const auto knownRole = facts(object).role;
  if (knownRole && knownRole->value && mayBeLong(*knownRole->value)) {
    const auto count = childCount(object);
    if (count.value && *count.value > mostListChildren) {
      return childrenOneByOne(object, mostListChildren);
    }
  }
  return objectsOf(call(object, accessibleInterface, "GetChildren"));
}

AccessibilityResult<std::vector<AtspiObject>> AtspiReader::childrenOneByOne(
    const AtspiObject& object, int count) {
  std::vector<MessagePointer> requests;
  for (int index = 0; index < count; ++index) {
    auto request = connection_.request(object, accessibleInterface, "GetChildAtIndex");
    if (request) sd_bus_message_append(request.get(), "i", index);
    requests.push_back(std::move(request));
  }
  std::vector<AtspiObject> children;
  for (const AtspiReply& reply : connection_.callTogether(requests)) {
    auto child = objectOf(reply);
    if (child.value) children.push_back(std::move(*child.value));
  }
  return children;
}

AccessibilityResult<AtspiAttributes> AtspiReader::attributes(const AtspiObject& object) {
  return kept(object, &Facts::attributes,
              [&] { return attributesOf(call(object, accessibleInterface, "GetAttributes")); });
}

AccessibilityResult<std::vector<std::string>> AtspiReader::interfaces(const AtspiObject& object) {
  return kept(object, &Facts::interfaces,
              [&] { return textsOf(call(object, accessibleInterface, "GetInterfaces")); });
}

AccessibilityResult<Rect> AtspiReader::extents(const AtspiObject& object) {
  return kept(object, &Facts::extents, [&] {
    auto request = connection_.request(object, componentInterface, "GetExtents");
    if (request) sd_bus_message_append(request.get(), "u", atspiScreenCoordinates);
    return rectangleOf(connection_.call(request));
  });
}

AccessibilityResult<AtspiAttributes> AtspiReader::documentAttributes(const AtspiObject& object) {
  return kept(object, &Facts::documentAttributes,
              [&] { return attributesOf(call(object, documentInterface, "GetAttributes")); });
}

AccessibilityResult<AtspiObject> AtspiReader::activeDocument(const AtspiObject& frame) {
  return kept(frame, &Facts::activeDocument, [&] {
    return relationTargetOf(call(frame, accessibleInterface, "GetRelationSet"),
                            atspiRelationEmbeds);
  });
}

AccessibilityResult<std::string> AtspiReader::toolkitName(const AtspiObject& root) {
  return textPropertyOf(property(root, applicationInterface, "ToolkitName"));
}

AccessibilityResult<std::string> AtspiReader::toolkitVersion(const AtspiObject& root) {
  return textPropertyOf(property(root, applicationInterface, "Version"));
}

AccessibilityResult<std::string> AtspiReader::text(const AtspiObject& object) {
  const auto count = integerPropertyOf(property(object, textInterface, "CharacterCount"));
  if (!count.value) return count.error;
  auto request = connection_.request(object, textInterface, "GetText");
  if (request) sd_bus_message_append(request.get(), "ii", 0, std::min(*count.value, longestText));
  return textOf(connection_.call(request));
}

AccessibilityResult<double> AtspiReader::currentValue(const AtspiObject& object) {
  return realPropertyOf(property(object, "org.a11y.atspi.Value", "CurrentValue"));
}

AccessibilityResult<std::string> AtspiReader::linkAddress(const AtspiObject& object) {
  auto request = connection_.request(object, "org.a11y.atspi.Hyperlink", "GetURI");
  if (request) sd_bus_message_append(request.get(), "i", 0);
  return textOf(connection_.call(request));
}

AccessibilityResult<std::vector<AtspiObject>> AtspiReader::selectedChildren(
    const AtspiObject& object) {
  const auto count = integerPropertyOf(property(object, selectionInterface, "NSelectedChildren"));
  if (!count.value) return count.error;
  std::vector<MessagePointer> requests;
  for (int index = 0; index < std::min(*count.value, mostSelectedChildren); ++index) {
    auto request = connection_.request(object, selectionInterface, "GetSelectedChild");
    if (request) sd_bus_message_append(request.get(), "i", index);
    requests.push_back(std::move(request));
  }
  std::vector<AtspiObject> children;
  for (const AtspiReply& reply : connection_.callTogether(requests)) {
    auto child = objectOf(reply);
    if (child.value) children.push_back(std::move(*child.value));
  }
  return children;
}

MessagePointer AtspiReader::hitTestRequest(const AtspiObject& object, Point rootPoint) {
  auto request = connection_.request(object, componentInterface, "GetAccessibleAtPoint");
  if (request) {
    sd_bus_message_append(request.get(), "iiu", static_cast<std::int32_t>(std::lround(rootPoint.x)),
                          static_cast<std::int32_t>(std::lround(rootPoint.y)),
                          atspiScreenCoordinates);
  }
  return request;
}

AccessibilityResult<AtspiObject> AtspiReader::childAtPoint(const AtspiObject& object,
                                                           Point rootPoint) {
  return objectOf(connection_.call(hitTestRequest(object, rootPoint)));
}

void AtspiReader::touch(const AtspiObject& object, Point rootPoint) {
  connection_.send(hitTestRequest(object, rootPoint));
}

AccessibilityResult<std::vector<AtspiObject>> AtspiReader::matches(const AtspiObject& object,
                                                                   const AtspiMatchRule& rule,
                                                                   std::int32_t most) {
  auto request = connection_.request(object, "org.a11y.atspi.Collection", "GetMatches");
  if (request) appendMatchArguments(request.get(), rule, most);
  return objectsOf(connection_.call(request));
}

void AtspiReader::prefetchForMatching(const std::vector<AtspiObject>& windows) {
  std::vector<MessagePointer> requests;
  for (const AtspiObject& window : windows) {
    requests.push_back(propertyRequest(window, accessibleInterface, "Name"));
    auto extents = connection_.request(window, componentInterface, "GetExtents");
    if (extents) sd_bus_message_append(extents.get(), "u", atspiScreenCoordinates);
    requests.push_back(std::move(extents));
  }
  const auto replies = connection_.callTogether(requests);
  for (std::size_t index = 0; index < windows.size(); ++index) {
    facts(windows[index]).name = textPropertyOf(replies[2 * index]);
    facts(windows[index]).extents = rectangleOf(replies[2 * index + 1]);
  }
}

template <class Value, class Read>
void AtspiReader::prefetch(const std::vector<AtspiObject>& objects, Kept<Value> Facts::*fact,
                           const std::function<MessagePointer(const AtspiObject&)>& request,
                           Read read) {
  std::vector<const AtspiObject*> unknown;
  std::vector<MessagePointer> requests;
  for (const AtspiObject& object : objects) {
    if (facts(object).*fact) continue;
    unknown.push_back(&object);
    requests.push_back(request(object));
  }
  const auto replies = connection_.callTogether(requests);
  for (std::size_t index = 0; index < unknown.size(); ++index) {
    facts(*unknown[index]).*fact = read(replies[index]);
  }
}

void AtspiReader::prefetchRoles(const std::vector<AtspiObject>& objects) {
  prefetch(
      objects, &Facts::role,
      [this](const AtspiObject& object) {
        return connection_.request(object, accessibleInterface, "GetRole");
      },
      roleOf);
}

void AtspiReader::prefetchAttributes(const std::vector<AtspiObject>& objects) {
  prefetch(
      objects, &Facts::attributes,
      [this](const AtspiObject& object) {
        return connection_.request(object, accessibleInterface, "GetAttributes");
      },
      attributesOf);
}

void AtspiReader::prefetchNames(const std::vector<AtspiObject>& objects) {
  prefetch(
      objects, &Facts::name,
      [this](const AtspiObject& object) {
        return propertyRequest(object, accessibleInterface, "Name");
      },
      textPropertyOf);
}

}  // namespace kestro
