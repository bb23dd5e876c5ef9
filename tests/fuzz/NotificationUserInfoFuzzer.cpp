// User information of notifications, as an earlier version or anybody else may have stored it: as a
// dictionary where the input is one, and as the call in an ordinary one. Each answer does its work
// or nothing, and a call that can be read can be written again.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "SceneProcess.h"
#include "calls/CallNotificationContents.h"
#include "calls/CallPropertiesCoding.h"
#include "calls/CallSettings.h"
#include "calls/RunningCallDetector.h"
#include "scene/SceneDesktop.h"

namespace kestro {
namespace {

using Kind = UserNotificationResponse::Kind;

void expect(bool condition) {
  if (!condition) __builtin_trap();
}

// In a scene's preferences dictionaries have the form that they have in its notifications.
std::optional<PropertyListDictionary> dictionaryOf(const std::string& text) {
  const auto made =
      makeSceneDesktopFromText(R"({"helperPreferences": {"userInfo": )" + text + "}}", "input", {});
  const auto* desktop = std::get_if<std::unique_ptr<Desktop>>(&made);
  if (!desktop) return std::nullopt;
  const auto value =
      (*desktop)->platform().defaults.product(ProductStore::helperPreferences).value("userInfo");
  const auto* dictionary = value ? value->get<PropertyListDictionary>() : nullptr;
  return dictionary ? std::optional(*dictionary) : std::nullopt;
}

// Times are kept in seconds: a few digits of the last ones may be lost, the rest is not.
void writeAndReadAgain(const CallProperties& call) {
  const auto again = decodedCallProperties(encodedCallProperties(call));
  expect(again && again->metadata == call.metadata);
}

void answer(const PropertyListDictionary& userInfo, bool hasDatabase) {
  SceneProcess scene(hasDatabase ? "{}" : R"({"product": {"database": false}})");
  Process& process = scene.process();
  auto& detector = RunningCallDetector::sharedInstance(process);
  const auto call = callPropertiesOf(userInfo);
  const auto identifier = bundleIdentifierOf(userInfo);
  const auto respond = [&](Kind kind, const char* action = "") {
    detector.handleNotificationResponse("com.kestro.Kestro.callEnded", {kind, action}, userInfo);
  };
  const auto count = [&](const char* kind) { return scene.eventsOfKind(kind).size(); };

  respond(Kind::dismissed);
  expect(count("editor") == 0);
  const bool opens = hasDatabase && identifier && call && call->metadata.timeEntryTitle(process);
  respond(Kind::clicked);
  expect(count("editor") == (opens ? 1 : 0));
  respond(Kind::action, "createTaskForCall");
  expect(count("editor") == (opens ? 2 : 0));
  respond(Kind::action, "reportFalsePositive");
  expect(count("support") == 1);
  const std::size_t logged = count("log");
  respond(Kind::action, "doNotAskAgainForThisApp");
  expect(!identifier || process.shared<CallSettings>().isDisabled(*identifier));
  expect(count("log") == logged + (identifier ? 0 : 1));
  respond(Kind::action, "doNotAskAgain");
  expect(callNotificationMode(process) == CallNotificationMode::none);
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A database takes most of an input's time, so there is one for some of the calls that open an
  // editor then.
  const bool mayHaveDatabase = size % 8 == 0;
  const kestro::Data bytes(data, data + size);
  const auto call = kestro::decodedCallProperties(bytes);
  if (call) kestro::writeAndReadAgain(*call);
  kestro::answer({{"callProperties", bytes}, {"bundleIdentifier", "com.example.app"}},
                 call && mayHaveDatabase);
  const auto userInfo = kestro::dictionaryOf(std::string(data, data + size));
  if (!userInfo) return 0;
  const auto stored = kestro::callPropertiesOf(*userInfo);
  if (stored) kestro::writeAndReadAgain(*stored);
  kestro::answer(*userInfo, stored && mayHaveDatabase);
  return 0;
}
