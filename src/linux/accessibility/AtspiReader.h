// Reads facts of AT-SPI objects, each at most once in a sample. Every read costs one request unless
// it says otherwise. Main thread only.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "linux/accessibility/AtspiConnection.h"
#include "linux/process/SampleGeneration.h"

namespace kestro {

// What an application is to look for below one of its objects. Empty fields are no conditions; of
// several roles one must be the object's, of several attributes one must hold.
struct AtspiMatchRule {
  std::vector<AtspiState> states;
  std::vector<AtspiRole> roles;
  std::vector<std::pair<std::string, std::string>> attributes;
};

using AtspiAttributes = std::map<std::string, std::string, std::less<>>;

class AtspiReader {
 public:
  AtspiReader(AtspiConnection& connection, SampleGeneration& generation)
      : connection_(connection), generation_(generation) {}

  AccessibilityResult<AtspiRole> role(const AtspiObject& object);
  AccessibilityResult<AtspiStates> states(const AtspiObject& object);
  AccessibilityResult<std::string> name(const AtspiObject& object);
  AccessibilityResult<std::string> description(const AtspiObject& object);
  AccessibilityResult<std::string> helpText(const AtspiObject& object);
  AccessibilityResult<std::string> localizedRoleName(const AtspiObject& object);
  AccessibilityResult<AtspiObject> parent(const AtspiObject& object);
  AccessibilityResult<std::int32_t> childCount(const AtspiObject& object);
  // Of lists, tables and trees at most the first 250, for which the count is asked first: an
  // application may make its children only when it is asked for them.
  AccessibilityResult<std::vector<AtspiObject>> children(const AtspiObject& object);
  AccessibilityResult<AtspiAttributes> attributes(const AtspiObject& object);
  AccessibilityResult<std::vector<std::string>> interfaces(const AtspiObject& object);
  // In the X server's root coordinates, as far as the toolkit knows them.
  AccessibilityResult<Rect> extents(const AtspiObject& object);
  AccessibilityResult<AtspiAttributes> documentAttributes(const AtspiObject& object);
  // The document that a browser's window shows now; noValue when it shows none.
  AccessibilityResult<AtspiObject> activeDocument(const AtspiObject& frame);

  // Not kept: what these read is asked for once.
  AccessibilityResult<std::string> toolkitName(const AtspiObject& root);
  AccessibilityResult<std::string> toolkitVersion(const AtspiObject& root);
  AccessibilityResult<std::string> text(const AtspiObject& object);  // two requests
  AccessibilityResult<double> currentValue(const AtspiObject& object);
  AccessibilityResult<std::string> linkAddress(const AtspiObject& object);
  AccessibilityResult<std::vector<AtspiObject>> selectedChildren(const AtspiObject& object);
  AccessibilityResult<AtspiObject> childAtPoint(const AtspiObject& object, Point rootPoint);
  // A hit test whose answer nobody waits for: one message.
  void touch(const AtspiObject& object, Point rootPoint);
  // In tree order, `object` itself left out; at most `most`. One request, in which the application
  // looks at all that lies below. Not every toolkit can; those answer with an error.
  AccessibilityResult<std::vector<AtspiObject>> matches(const AtspiObject& object,
                                                        const AtspiMatchRule& rule,
                                                        std::int32_t most);

  // Reads of several facts, sent together and kept as those above.
  void prefetchForMatching(const std::vector<AtspiObject>& windows);  // name and extents of each
  void prefetchRoles(const std::vector<AtspiObject>& objects);
  void prefetchAttributes(const std::vector<AtspiObject>& objects);
  void prefetchNames(const std::vector<AtspiObject>& objects);

 private:
  template <class Value>
  using Kept = std::optional<AccessibilityResult<Value>>;
  struct Facts {
    Kept<AtspiRole> role;
    Kept<AtspiStates> states;
    Kept<std::string> name;
    Kept<std::string> description;
    Kept<std::string> helpText;
    Kept<std::string> localizedRoleName;
    Kept<AtspiObject> parent;
    Kept<std::int32_t> childCount;
    Kept<std::vector<AtspiObject>> children;
    Kept<AtspiAttributes> attributes;
    Kept<std::vector<std::string>> interfaces;
    Kept<Rect> extents;
    Kept<AtspiAttributes> documentAttributes;
    Kept<AtspiObject> activeDocument;
  };

  Facts& facts(const AtspiObject& object);
  template <class Value, class Read>
  AccessibilityResult<Value> kept(const AtspiObject& object, Kept<Value> Facts::*fact, Read read);
  MessagePointer propertyRequest(const AtspiObject& object, const char* interface,
                                 const char* property);
  AtspiReply property(const AtspiObject& object, const char* interface, const char* name);
  AtspiReply call(const AtspiObject& object, const char* interface, const char* member);
  MessagePointer hitTestRequest(const AtspiObject& object, Point rootPoint);
  template <class Value, class Read>
  void prefetch(const std::vector<AtspiObject>& objects, Kept<Value> Facts::*fact,
                const std::function<MessagePointer(const AtspiObject&)>& request, Read read);
  AccessibilityResult<std::vector<AtspiObject>> readChildren(const AtspiObject& object);
  AccessibilityResult<std::vector<AtspiObject>> childrenOneByOne(const AtspiObject& object,
                                                                 int count);

  AtspiConnection& connection_;
  SampleGeneration& generation_;
  std::uint64_t factsOf_ = 0;
  std::map<AtspiObject, Facts> facts_;
};

}  // namespace kestro
