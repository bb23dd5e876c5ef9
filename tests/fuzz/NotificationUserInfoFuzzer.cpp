// User information of notifications, as an earlier version or anybody else may have stored it: each
// answer to one of them does something or nothing, and what can be read can be written again.
#include <array>
#include <cstddef>
#include <cstdint>

#include "SceneProcess.h"
#include "calls/CallPropertiesCoding.h"
#include "calls/RunningCallDetector.h"

namespace {

using kestro::UserNotificationResponse;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const kestro::Data bytes(data, data + size);
  const auto call = kestro::decodedCallProperties(bytes);
  // Times are kept in seconds: a few digits of the last ones may be lost, the rest is not.
  if (call && kestro::decodedCallProperties(kestro::encodedCallProperties(*call))->metadata !=
                  call->metadata) {
    __builtin_trap();
  }
  // Without a database no editor opens: what is looked for is in the reading.
  kestro::SceneProcess scene(R"({"product": {"database": false}})");
  auto& detector = kestro::RunningCallDetector::sharedInstance(scene.process());
  constexpr std::array<const char*, 2> actions{"createTaskForCall", "doNotAskAgainForThisApp"};
  for (const char* action : actions) {
    detector.handleNotificationResponse(
        "com.kestro.Kestro.callEnded", {UserNotificationResponse::Kind::action, action},
        {{"callProperties", bytes}, {"bundleIdentifier", "com.example.app"}});
  }
  return 0;
}
