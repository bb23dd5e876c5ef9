#include <fmt/format.h>

#include "platform/Accessibility.h"
#include "platform/Clock.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "platform/Transcript.h"
#include "product/KestroUI.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {
namespace {

ActivityWriter* activityWriter(Process& process) {
  DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process);
  return database ? database->activityWriter() : nullptr;
}

PropertyListArray descriptions(const std::vector<UIElement>& elements) {
  PropertyListArray texts;
  for (const UIElement& element : elements) {
    texts.emplace_back(element.reference().description());
  }
  return texts;
}

// What reading the other applications has cost.
struct SampleCost {
  std::uint64_t requests = 0;
  bool hasUsedUpBudget = false;
};

// Counts from its making on.
class SampleMeter {
 public:
  explicit SampleMeter(Platform& platform)
      : accessibility_(platform.accessibility), before_(accessibility_.requestCount()) {
    accessibility_.beginSample(platform.clock.monotonicTime());
  }
  ~SampleMeter() { end(); }
  SampleMeter(const SampleMeter&) = delete;
  SampleMeter& operator=(const SampleMeter&) = delete;

  // Once; the sample reads nothing afterwards.
  SampleCost end() {
    if (hasEnded_) return {};
    hasEnded_ = true;
    const bool hasUsedUpBudget = accessibility_.endSample();
    return {accessibility_.requestCount() - before_, hasUsedUpBudget};
  }

 private:
  Accessibility& accessibility_;
  std::uint64_t before_;
  bool hasEnded_ = false;
};

PropertyListDictionary transcriptFields(const Activity& activity, const SampleCost& cost) {
  PropertyListDictionary fields;
  fields.setIfPresent("application", activity.application().localizedName);
  fields.setIfPresent("applicationBundleIdentifier", activity.applicationBundleIdentifier());
  fields.setIfPresent("applicationExecutableURL", activity.applicationExecutableURL());
  fields.set("applicationProcessIdentifier", activity.applicationProcessIdentifier());
  fields.set("isFullscreen", activity.isFullscreen);
  fields.set("isShowingSavePanel", activity.isShowingSavePanel);
  if (activity.accessibilityWindows) {
    fields.set("accessibilityWindows", descriptions(*activity.accessibilityWindows));
  }
  fields.setIfPresent("windowTitle", activity.details.windowTitle);
  fields.setIfPresent("documentTitle", activity.details.documentTitle);
  fields.setIfPresent("documentPath", activity.details.documentPath);
  fields.setIfPresent("contextPath", activity.details.contextPath);
  fields.set("isPrivateBrowsing", activity.details.isPrivateBrowsing);
  fields.set("requests", cost.requests);
  if (cost.hasUsedUpBudget) fields.set("budgetUsedUp", true);
  return fields;
}

}  // namespace

struct InfoLogger::State {
  explicit State(Process& owner)
      : process(owner),
        relaunchRequests(owner.platform().notificationCenter.observe(
            productNotification::relaunchWanted,
            [this](const PropertyListDictionary& request) { requestRelaunch(request); })) {}

  void start();
  void stop();
  void sample();
  void sampleForCalls();
  void updateCalls(Activity& activity);
  void updatePausedSampling();
  void requestRelaunch(const PropertyListDictionary& request) const;
  bool startAnnouncedFlush();
  void keepPrivate(Activity& activity);
  std::optional<Activity> currentActivity();
  template <class Step>
  void guarded(std::string_view name, Step step);
  void record(const std::optional<Activity>& activity, const SampleCost& cost) const;
  void store(Date time, const std::optional<Activity>& activity);

  Process& process;
  InfoLoggerPresenter* presenter = nullptr;
  InfoLoggerExtractor* extractor = nullptr;
  InfoLoggerCallDetector* callDetector = nullptr;
  bool hasReportedFailure = false;
  bool hadRunningCall = false;
  std::optional<ProcessIdentifier> privateApplication;  // whose window was private when last read
  std::unique_ptr<Timer> timer;                         // null while tracking is off
  std::unique_ptr<Timer> pausedTimer;  // while tracking is off and calls are detected all the same
  std::shared_ptr<bool> firstSample;   // gone when the first sample is no longer wanted
  std::unique_ptr<Timer> flushTimer;   // until an announced flush is done
  NotificationCenter::Observation relaunchRequests;
};

void InfoLogger::State::start() {
  if (timer) return;
  RunLoop& runLoop = process.platform().runLoop;
  timer = runLoop.scheduleEvery(samplingInterval(process), [this] { sample(); });
  firstSample = std::make_shared<bool>(true);
  runLoop.post([this, wanted = std::weak_ptr(firstSample)] {
    if (!wanted.expired()) sample();
  });
}

void InfoLogger::State::stop() {
  if (!timer) return;
  timer.reset();
  firstSample.reset();
  store(process.platform().clock.now(), std::nullopt);
}

void InfoLogger::State::updatePausedSampling() {
  const bool isWanted = !timer && callDetector && callDetector->detectsCallsWhenTrackingIsPaused();
  if (!isWanted) {
    pausedTimer.reset();
  } else if (!pausedTimer) {
    pausedTimer = process.platform().runLoop.scheduleEvery(samplingInterval(process),
                                                           [this] { sampleForCalls(); });
  }
}

// Nothing of it is recorded or stored: the user has paused tracking.
void InfoLogger::State::sampleForCalls() {
  const SampleMeter meter(process.platform());
  auto activity = currentActivity();
  if (!activity) return;
  guarded("the application's extractor", [&] { extractor->callInfoExtractorFor(*activity); });
  updateCalls(*activity);
}

void InfoLogger::State::updateCalls(Activity& activity) {
  if (!callDetector) return;
  guarded("the call detector", [&] { callDetector->updateCallStatusForActivity(activity); });
  if (std::exchange(hadRunningCall, callDetector->hasRunningCall()) == hadRunningCall) return;
  process.platform().notificationCenter.post(productNotification::runningCallsDidChange);
}

void InfoLogger::State::sample() {
  const Date time = process.platform().clock.now();
  SampleMeter meter(process.platform());
  auto activity = currentActivity();
  if (activity) {
    guarded("the application's extractor", [&] { extractor->callInfoExtractorFor(*activity); });
    keepPrivate(*activity);
    updateCalls(*activity);
  }
  record(activity, meter.end());
  if (timer) store(time, activity);
}

// While an application rests from being read, only its window's title is known, which need not say
// that the window is private: it counts as what it was.
void InfoLogger::State::keepPrivate(Activity& activity) {
  const ProcessIdentifier application = activity.applicationProcessIdentifier();
  if (!process.platform().accessibility.isResting(application)) {
    privateApplication.reset();
    if (activity.details.isPrivateBrowsing) privateApplication = application;
  } else if (privateApplication == application) {
    activity.details.isPrivateBrowsing = true;
  }
}

std::optional<Activity> InfoLogger::State::currentActivity() {
  std::optional<Activity> activity;
  if (extractor) {
    guarded("the probe", [&] { activity = extractor->getCurrentActivity(); });
  }
  return activity;
}

// What a step has found before it failed stays. Its message may hold a title, so it is not logged.
template <class Step>
void InfoLogger::State::guarded(std::string_view name, Step step) {
  try {
    step();
  } catch (const std::exception&) {
    if (hasReportedFailure) return;
    hasReportedFailure = true;
    process.platform().log.write(fmt::format(
        "A sample is incomplete because {} failed. Later ones are not reported.", name));
  }
}

void InfoLogger::State::record(const std::optional<Activity>& activity,
                               const SampleCost& cost) const {
  Transcript& transcript = process.platform().transcript;
  if (!transcript.isActive()) return;
  if (activity) {
    transcript.record("activity", transcriptFields(*activity, cost));
  } else {
    transcript.record("noActivity", {});
  }
}

void InfoLogger::State::store(Date time, const std::optional<Activity>& activity) {
  ActivityWriter* writer = activityWriter(process);
  if (!writer) return;
  guarded("the activity store", [&] {
    if (activity) {
      writer->write(time, *activity);
    } else {
      writer->writeNoActivity(time);
    }
  });
}

void InfoLogger::State::requestRelaunch(const PropertyListDictionary& request) const {
  const PropertyList* delay = request.find("delay");
  const auto* seconds = delay ? delay->get<double>() : nullptr;
  const PropertyList* attributes = request.find("attributes");
  const auto* fields = attributes ? attributes->get<PropertyListDictionary>() : nullptr;
  if (!extractor || !seconds) return;
  extractor->relaunchWithDelay(Seconds(*seconds), fields ? *fields : PropertyListDictionary());
}

// The embedded product flushes at once; its conditions can have it take longer, or never end.
bool InfoLogger::State::startAnnouncedFlush() {
  const PropertyList* given = process.platform().productConditions.find("shutdownFlush");
  if (!given) return false;
  if (const auto duration = number(*given)) {
    flushTimer = process.platform().runLoop.scheduleAfter(Seconds(*duration), [this] {
      process.platform().notificationCenter.post(ActivityWriter::flushAndSyncFinishedNotification);
    });
  }
  return true;
}

InfoLogger::InfoLogger(Process& process) : state_(std::make_unique<State>(process)) {}
InfoLogger::~InfoLogger() = default;

void InfoLogger::setPresenter(InfoLoggerPresenter* presenter) {
  if (presenter) recordOperation(state_->process, "InfoLogger setPresenter", {true});
  state_->presenter = presenter;
}

void InfoLogger::setInfoExtractor(InfoLoggerExtractor* extractor) {
  if (extractor) recordOperation(state_->process, "InfoLogger setInfoExtractor", {true});
  state_->extractor = extractor;
}

void InfoLogger::setCallDetector(InfoLoggerCallDetector* callDetector) {
  if (callDetector) recordOperation(state_->process, "InfoLogger setCallDetector", {true});
  state_->callDetector = callDetector;
  state_->updatePausedSampling();
}

bool InfoLogger::shouldTrack() const {
  return state_->timer != nullptr;
}

void InfoLogger::setShouldTrack(bool shouldTrack) {
  recordOperation(state_->process, "InfoLogger setShouldTrack", {shouldTrack});
  if (shouldTrack) {
    state_->start();
  } else {
    state_->stop();
  }
  state_->updatePausedSampling();
}

bool InfoLogger::hasRunningCall() const {
  return state_->callDetector && state_->callDetector->hasRunningCall();
}

void InfoLogger::statusItemClicked() {
  recordOperation(state_->process, "InfoLogger statusItemClicked");
}

bool InfoLogger::prepareForShutdown(bool isRelaunch) {
  recordOperation(state_->process, "InfoLogger prepareForShutdownWithIsRelaunch", {isRelaunch});
  if (!isRelaunch) {
    state_->stop();
    state_->pausedTimer.reset();
    if (state_->presenter) state_->presenter->updateStatusItemTransparency();
  }
  if (ActivityWriter* writer = activityWriter(state_->process)) writer->flush();
  if (auto* database = DatabaseWrapper::sharedInstance(state_->process)) {
    isRelaunch ? database->finishMutations() : database->close();
  }
  return state_->startAnnouncedFlush();
}

}  // namespace kestro
