#include "platform/linux/AtspiReader.h"

#include <algorithm>
#include <cmath>

#include "platform/linux/AtspiMessages.h"

namespace kestro {
namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* application = "org.a11y.atspi.Application";
constexpr const char* component = "org.a11y.atspi.Component";
constexpr const char* document = "org.a11y.atspi.Document";
constexpr const char* textInterface = "org.a11y.atspi.Text";
constexpr const char* selection = "org.a11y.atspi.Selection";

constexpr int mostListChildren = 250;
constexpr int mostSelectedChildren = 50;
// A text of an editor may be a whole book; nothing here looks at more than its beginning.
constexpr std::int32_t longestText = 16'384;

bool mayBeLong(AtspiRole role) {
  return role == AtspiRole::list || role == AtspiRole::table || role == AtspiRole::tree ||
         role == AtspiRole::treeTable || role == AtspiRole::listBox;
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
  return kept(object, &Facts::role, [&] { return roleOf(call(object, accessible, "GetRole")); });
}

AccessibilityResult<AtspiStates> AtspiReader::states(const AtspiObject& object) {
  return kept(object, &Facts::states,
              [&] { return statesOf(call(object, accessible, "GetState")); });
}

AccessibilityResult<std::string> AtspiReader::name(const AtspiObject& object) {
  return kept(object, &Facts::name,
              [&] { return textPropertyOf(property(object, accessible, "Name")); });
}

AccessibilityResult<std::string> AtspiReader::description(const AtspiObject& object) {
  return kept(object, &Facts::description,
              [&] { return textPropertyOf(property(object, accessible, "Description")); });
}

AccessibilityResult<std::string> AtspiReader::helpText(const AtspiObject& object) {
  return kept(object, &Facts::helpText,
              [&] { return textPropertyOf(property(object, accessible, "HelpText")); });
}

AccessibilityResult<std::string> AtspiReader::localizedRoleName(const AtspiObject& object) {
  return kept(object, &Facts::localizedRoleName,
              [&] { return textOf(call(object, accessible, "GetLocalizedRoleName")); });
}

AccessibilityResult<AtspiObject> AtspiReader::parent(const AtspiObject& object) {
  return kept(object, &Facts::parent,
              [&] { return objectPropertyOf(property(object, accessible, "Parent")); });
}

AccessibilityResult<std::int32_t> AtspiReader::childCount(const AtspiObject& object) {
  return kept(object, &Facts::childCount,
              [&] { return integerPropertyOf(property(object, accessible, "ChildCount")); });
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
  return objectsOf(call(object, accessible, "GetChildren"));
}

AccessibilityResult<std::vector<AtspiObject>> AtspiReader::childrenOneByOne(
    const AtspiObject& object, int count) {
  std::vector<MessagePointer> requests;
  for (int index = 0; index < count; ++index) {
    auto request = connection_.request(object, accessible, "GetChildAtIndex");
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
              [&] { return attributesOf(call(object, accessible, "GetAttributes")); });
}

AccessibilityResult<std::vector<std::string>> AtspiReader::interfaces(const AtspiObject& object) {
  return kept(object, &Facts::interfaces,
              [&] { return textsOf(call(object, accessible, "GetInterfaces")); });
}

AccessibilityResult<Rect> AtspiReader::extents(const AtspiObject& object) {
  return kept(object, &Facts::extents, [&] {
    auto request = connection_.request(object, component, "GetExtents");
    if (request) sd_bus_message_append(request.get(), "u", atspiScreenCoordinates);
    return rectangleOf(connection_.call(request));
  });
}

AccessibilityResult<AtspiAttributes> AtspiReader::documentAttributes(const AtspiObject& object) {
  return kept(object, &Facts::documentAttributes,
              [&] { return attributesOf(call(object, document, "GetAttributes")); });
}

AccessibilityResult<AtspiObject> AtspiReader::activeDocument(const AtspiObject& frame) {
  return kept(frame, &Facts::activeDocument, [&] {
    return relationTargetOf(call(frame, accessible, "GetRelationSet"), atspiRelationEmbeds);
  });
}

AccessibilityResult<std::string> AtspiReader::toolkitName(const AtspiObject& root) {
  return textPropertyOf(property(root, application, "ToolkitName"));
}

AccessibilityResult<std::string> AtspiReader::toolkitVersion(const AtspiObject& root) {
  return textPropertyOf(property(root, application, "Version"));
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
  const auto count = integerPropertyOf(property(object, selection, "NSelectedChildren"));
  if (!count.value) return count.error;
  std::vector<MessagePointer> requests;
  for (int index = 0; index < std::min(*count.value, mostSelectedChildren); ++index) {
    auto request = connection_.request(object, selection, "GetSelectedChild");
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

AccessibilityResult<AtspiObject> AtspiReader::childAtPoint(const AtspiObject& object,
                                                           Point rootPoint) {
  auto request = connection_.request(object, component, "GetAccessibleAtPoint");
  if (request) {
    sd_bus_message_append(request.get(), "iiu", static_cast<std::int32_t>(std::lround(rootPoint.x)),
                          static_cast<std::int32_t>(std::lround(rootPoint.y)),
                          atspiScreenCoordinates);
  }
  return objectOf(connection_.call(request));
}

// A search inside the application, for one object: it ends at the first.
AccessibilityResult<AtspiObject> AtspiReader::focusedDescendant(const AtspiObject& object) {
  constexpr std::int32_t matchAll = 1;
  constexpr std::int32_t matchAny = 2;
  constexpr std::uint32_t documentOrder = 1;
  constexpr std::int32_t focusedBit = 1 << static_cast<int>(AtspiState::focused);
  auto request = connection_.request(object, "org.a11y.atspi.Collection", "GetMatches");
  if (request) {
    // States, attributes, roles and interfaces, each with how they match: for an empty list of
    // interfaces only ALL lets everything through.
    sd_bus_message_append(request.get(), "(aiia{ss}iaiiasib)uib", 2, focusedBit, 0, matchAll, 0,
                          matchAny, 0, matchAny, 0, matchAll, 0, documentOrder, 1, 1);
  }
  const auto found = objectsOf(connection_.call(request));
  if (!found.value) return found.error;
  if (found.value->empty()) return AccessibilityError::noValue;
  return found.value->front();
}

void AtspiReader::prefetchForMatching(const std::vector<AtspiObject>& windows) {
  std::vector<MessagePointer> requests;
  for (const AtspiObject& window : windows) {
    requests.push_back(propertyRequest(window, accessible, "Name"));
    auto extents = connection_.request(window, component, "GetExtents");
    if (extents) sd_bus_message_append(extents.get(), "u", atspiScreenCoordinates);
    requests.push_back(std::move(extents));
  }
  const auto replies = connection_.callTogether(requests);
  for (std::size_t index = 0; index < windows.size(); ++index) {
    facts(windows[index]).name = textPropertyOf(replies[2 * index]);
    facts(windows[index]).extents = rectangleOf(replies[2 * index + 1]);
  }
}

void AtspiReader::prefetchRoles(const std::vector<AtspiObject>& objects) {
  std::vector<MessagePointer> requests;
  requests.reserve(objects.size());
  for (const AtspiObject& object : objects) {
    requests.push_back(connection_.request(object, accessible, "GetRole"));
  }
  const auto replies = connection_.callTogether(requests);
  for (std::size_t index = 0; index < objects.size(); ++index) {
    facts(objects[index]).role = roleOf(replies[index]);
  }
}

}  // namespace kestro
