#include "SceneProcess.h"

#include <cstdlib>
#include <functional>
#include <iostream>

#include "extractors/AccessibilityElement.h"
#include "scene/SceneDesktop.h"

namespace kestro {
namespace {

class CollectingWriter final : public TranscriptWriter {
 public:
  explicit CollectingWriter(std::shared_ptr<std::vector<SceneProcess::Event>> events)
      : events_(std::move(events)) {}
  void write(Seconds, std::string_view kind, const PropertyListDictionary& fields) override {
    events_->push_back({std::string(kind), fields});
  }

 private:
  std::shared_ptr<std::vector<SceneProcess::Event>> events_;
};

[[noreturn]] void endWith(std::string_view reason) {
  std::cerr << reason << std::endl;
  std::abort();
}

std::unique_ptr<Desktop> makeDesktop(std::string_view text,
                                     std::unique_ptr<TranscriptWriter> writer) {
  DesktopOptions options;
  options.transcriptWriter = std::move(writer);
  auto made = makeSceneDesktopFromText(text, "scene of the test", std::move(options));
  if (const auto* error = std::get_if<SceneError>(&made)) endWith(error->message);
  return std::get<std::unique_ptr<Desktop>>(std::move(made));
}

}  // namespace

SceneProcess::SceneProcess(std::string_view scene)
    : events_(std::make_shared<std::vector<Event>>()),
      desktop_(makeDesktop(scene, std::make_unique<CollectingWriter>(events_))),
      process_(std::make_unique<Process>(desktop_->platform())) {}

UIElement SceneProcess::element(std::string_view id) {
  constexpr ProcessIdentifier highest = 100;
  constexpr std::int64_t deepest = 50;
  const auto hasId = [&](const AccessibilityElement& element) {
    return element.handle().reference().description() == id;
  };
  for (ProcessIdentifier pid = 1; pid <= highest; ++pid) {
    const auto application = process_->platform().accessibility.applicationElement(pid);
    if (!application) continue;
    const auto found =
        AccessibilityElement(*process_, *application).firstDescendant(deepest, hasId);
    if (found) return found->handle();
  }
  endWith("no element has the id " + std::string(id));
}

std::vector<SceneProcess::Event> SceneProcess::eventsOfKind(std::string_view kind) const {
  std::vector<Event> matching;
  for (const Event& event : *events_) {
    if (event.kind == kind) matching.push_back(event);
  }
  return matching;
}

}  // namespace kestro
