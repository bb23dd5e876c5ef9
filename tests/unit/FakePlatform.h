// A platform without a desktop: memory for preferences and log, a clock and run loop that a test
// moves. For tests of parts that need no scene.
#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/Alerts.h"
#include "platform/AppleEvents.h"
#include "platform/ChildProcesses.h"
#include "platform/Clock.h"
#include "platform/ControlService.h"
#include "platform/FileEvents.h"
#include "platform/Files.h"
#include "platform/GlobalShortcuts.h"
#include "platform/LoginItems.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/PowerManagement.h"
#include "platform/RunLoop.h"
#include "platform/StandardOutput.h"
#include "platform/StatusBar.h"
#include "platform/SystemLog.h"
#include "platform/TimeEntryEditors.h"
#include "platform/Transcript.h"
#include "platform/UserDefaults.h"
#include "platform/UserNotifications.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"

namespace kestro::fakes {

class ManualRunLoop final : public RunLoop, public Clock {
 public:
  Date now() const override { return now_; }
  Seconds monotonicTime() const override { return now_.time_since_epoch() + setForward_; }
  void setNow(Date time) { now_ = time; }
  // As a user sets the clock: what is due stays as far away as it was.
  void setWallClock(Date time) {
    for (const auto& entry : entries_)
      entry->due += time - now_;
    setForward_ += now_ - time;
    now_ = time;
  }

  void post(Task task, TaskOrigin) override { add(Seconds(0), Seconds(0), std::move(task)); }
  std::unique_ptr<Timer> scheduleAfter(Seconds delay, Task task, TaskOrigin) override {
    return std::make_unique<Handle>(*this, add(delay, Seconds(0), std::move(task)));
  }
  std::unique_ptr<Timer> scheduleEvery(Seconds interval, Task task, TaskOrigin) override {
    return std::make_unique<Handle>(*this, add(interval, interval, std::move(task)));
  }
  std::unique_ptr<Timer> scheduleAt(Date date, Task task, TaskOrigin origin) override {
    return scheduleAfter(std::max(date, now_) - now_, std::move(task), origin);
  }
  void sleep(Seconds duration) override {
    now_ += std::chrono::round<Date::duration>(std::max(duration, Seconds(0)));
  }
  bool isTerminationPending() const override { return false; }
  void setTerminationHandler(Task) override {}
  int run() override { return 0; }
  void stop(int) override {}

  // Runs what falls due within `duration`, in order.
  void advance(Seconds duration) {
    const Date end = now_ + std::chrono::round<Date::duration>(duration);
    for (auto next = nextDueUntil(end); next != entries_.end(); next = nextDueUntil(end)) {
      const std::shared_ptr<Entry> entry = *next;
      now_ = std::max(now_, entry->due);
      if (entry->interval == Seconds(0)) {
        entries_.erase(next);
      } else {
        entry->due += std::chrono::round<Date::duration>(entry->interval);
      }
      entry->task();
    }
    now_ = std::max(now_, end);  // a task may have slept for longer
  }

 private:
  struct Entry {
    Date due;
    Seconds interval;
    Task task;
  };
  struct Handle final : Timer {
    Handle(ManualRunLoop& owner, std::shared_ptr<Entry> scheduled)
        : loop(owner), entry(std::move(scheduled)) {}
    ~Handle() override { std::erase(loop.entries_, entry); }
    ManualRunLoop& loop;
    std::shared_ptr<Entry> entry;
  };

  std::shared_ptr<Entry> add(Seconds delay, Seconds interval, Task task) {
    const Date due = now_ + std::chrono::round<Date::duration>(delay);
    entries_.push_back(std::make_shared<Entry>(Entry{due, interval, std::move(task)}));
    return entries_.back();
  }
  std::vector<std::shared_ptr<Entry>>::iterator nextDueUntil(Date end) {
    const auto next = std::ranges::min_element(
        entries_, {}, [](const std::shared_ptr<Entry>& entry) { return entry->due; });
    return next != entries_.end() && (*next)->due <= end ? next : entries_.end();
  }

  Seconds setForward_{};
  Date now_{};
  std::vector<std::shared_ptr<Entry>> entries_;
};

class MemoryDefaults final : public UserDefaults {
 public:
  std::optional<PropertyList> value(std::string_view key) const override {
    const PropertyList* found = values_.find(key);
    return found ? std::optional(*found) : std::nullopt;
  }
  void set(std::string_view key, PropertyList value) override {
    values_.set(std::string(key), std::move(value));
  }
  void remove(std::string_view key) override { values_.remove(key); }
  void synchronize() override {}

 private:
  PropertyListDictionary values_;
};

class MemoryDefaultsDatabase final : public UserDefaultsDatabase {
 public:
  UserDefaults& standard() override { return standard_; }
  UserDefaults* suite(std::string_view name) override { return &suites_[std::string(name)]; }
  UserDefaults& product(ProductStore store) override { return products_[store]; }

 private:
  MemoryDefaults standard_;
  std::map<std::string, MemoryDefaults> suites_;
  std::map<ProductStore, MemoryDefaults> products_;
};

struct MemoryLog final : SystemLog {
  void write(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

struct MemoryTranscript final : Transcript {
  bool isActive() const override { return isListening; }
  void record(std::string_view kind, PropertyListDictionary fields) override {
    events.emplace_back(kind, std::move(fields));
  }
  bool isListening = true;
  std::vector<std::pair<std::string, PropertyListDictionary>> events;
};

// Accessibility without applications: every request fails, and is counted.
class EmptyAccessibility final : public Accessibility {
 public:
  using Element = const UIElement&;
  static constexpr auto failure = AccessibilityError::cannotComplete;

  bool isTrusted() const override { return trusted; }
  std::optional<UIElement> applicationElement(ProcessIdentifier) override { return {}; }
  std::optional<UIElement> systemWideElement() override { return {}; }
  AccessibilityError setMessagingTimeout(Element, float) override { return failure; }
  AccessibilityResult<ProcessIdentifier> processIdentifier(Element) override { return failure; }
  AccessibilityResult<AttributeValue> copyAttributeValue(Element, std::string_view) override {
    return failure;
  }
  AccessibilityResult<std::vector<std::string>> copyAttributeNames(Element) override {
    return failure;
  }
  AccessibilityResult<std::int64_t> attributeValueCount(Element, std::string_view) override {
    return failure;
  }
  AccessibilityResult<bool> isAttributeSettable(Element, std::string_view) override {
    return failure;
  }
  AccessibilityError setAttributeValue(Element, std::string_view, const AttributeValue&) override {
    return failure;
  }
  AccessibilityResult<std::vector<std::string>> copyActionNames(Element) override {
    return failure;
  }
  AccessibilityResult<std::string> copyActionDescription(Element, std::string_view) override {
    return failure;
  }
  AccessibilityError performAction(Element, std::string_view) override { return failure; }
  AccessibilityResult<UIElement> copyElementAtPosition(Element, float, float) override {
    return failure;
  }
  AccessibilityResult<std::vector<UIElement>> findElements(Element, const ElementSearch&) override {
    return AccessibilityError::notImplemented;
  }
  void request() { payForRequest(); }

  bool trusted = true;
};

struct EmptyWindowServer final : WindowServer {
  std::vector<WindowEntry> onScreenWindows() override { return {}; }
  bool hasScreenCaptureAccess() override { return false; }
  void requestScreenCaptureAccess() override {}
};

struct EmptyWorkspace final : Workspace {
  std::optional<RunningApplication> frontmostApplication() override { return {}; }
  std::optional<RunningApplication> runningApplication(ProcessIdentifier) override { return {}; }
  std::vector<RunningApplication> runningApplications(std::string_view) override { return {}; }
  std::optional<std::string> executablePath(ProcessIdentifier) override { return {}; }
  std::optional<ApplicationBundle> bundleAtPath(const std::string&) override { return {}; }
  std::optional<std::string> applicationPath(std::string_view) override { return {}; }
  void openApplication(const std::string&) override {}
  bool openAccessibilitySettings() override { return false; }
  std::vector<Rect> screens() override { return {}; }
};

struct NoChildProcesses final : ChildProcesses {
  std::variant<ExitStatus, LaunchFailure> runAndWait(const std::string&,
                                                     const std::vector<std::string>&) override {
    return LaunchFailure{"no programs here"};
  }
  std::optional<LaunchFailure> startDetached(const std::string&,
                                             const std::vector<std::string>&) override {
    return LaunchFailure{"no programs here"};
  }
};

struct NoFiles final : Files {
  std::optional<PropertyListDictionary> dictionary(const std::string&) override { return {}; }
  bool exists(const std::string&) override { return false; }
  std::optional<std::string> copy(const std::string&, const std::string&) override {
    return "no files here";
  }
  std::optional<std::string> makeDirectories(const std::string&) override {
    return "no files here";
  }
  std::optional<std::string> documentsDirectory() override { return {}; }
};

// Delivers when a test says so.
class ManualFileEvents final : public FileEvents {
 public:
  std::unique_ptr<FileEventStream> makeStream(const std::vector<std::string>& paths, Seconds,
                                              Delivery delivery) override {
    ++streams;
    watched = paths;
    deliver = std::move(delivery);
    return std::make_unique<Stream>(*this);
  }

  int streams = 0;  // running
  int flushes = 0;
  std::vector<std::string> watched;
  Delivery deliver;

 private:
  struct Stream final : FileEventStream {
    explicit Stream(ManualFileEvents& events) : owner(events) {}
    ~Stream() override { --owner.streams; }
    void flushSync() override { ++owner.flushes; }
    void flushAsync() override { ++owner.flushes; }
    std::string description() const override { return "manual"; }
    ManualFileEvents& owner;
  };
};

struct NoPowerManagement final : PowerManagement {
  std::optional<AssertionsByProcess> assertionsByProcess() override { return {}; }
};

struct NoUserNotifications final : UserNotifications {
  void setCategory(const std::string&, std::vector<UserNotificationAction>) override {}
  void requestPermission(std::function<void(bool)> answer) override { answer(false); }
  void deliver(const UserNotification&) override {}
  void setResponseHandler(ResponseHandler) override {}
};

struct NoTimeEntryEditors final : TimeEntryEditors {
  void present(const TimeEntryEditorContents&, TimeEntryEditorAids, Placement,
               Completion) override {}
};

// Answers with the last button.
struct NoAlerts final : Alerts {
  void present(const Alert& alert, Completion completion) override {
    if (completion) completion({alert.buttons.size() - 1, alert.suppressionIsChecked});
  }
  void bringToFront() override {}
};

struct UnseenStatusBar final : StatusBar {
  struct Item final : StatusItem {
    explicit Item(StatusItemProperties given) : shown(std::move(given)) {}
    const StatusItemProperties& properties() const override { return shown; }
    void setProperties(StatusItemProperties given) override { shown = std::move(given); }
    void observeEffectiveAppearance(std::function<void()>) override {}
    StatusItemProperties shown;
  };
  std::unique_ptr<StatusItem> makeStatusItem(StatusItemProperties properties,
                                             StatusItemDelegate&) override {
    return std::make_unique<Item>(std::move(properties));
  }
};

struct NoGlobalShortcuts final : GlobalShortcuts {
  std::unique_ptr<GlobalShortcut> grab(const KeyEquivalent&, std::function<void()>) override {
    return nullptr;
  }
};

struct NoAppleEvents final : AppleEvents {
  void setCommandHandler(CommandHandler) override {}
  void setGetURLHandler(URLHandler) override {}
};

// Keeps the delegate for tests to ask, and counts what it is told.
struct DirectControlService final : ControlService {
  void setDelegate(ControlDelegate* given) override { delegate = given; }
  void statusMayHaveChanged() override { ++changes; }
  ControlDelegate* delegate = nullptr;
  int changes = 0;
};

// Nobody is asked about what is so already.
struct AlwaysLoginItem final : LoginItems {
  bool startsAtLogin() const override { return true; }
  void setStartsAtLogin(bool) override {}
};

struct MemoryOutput final : StandardOutput {
  void printLine(std::string_view text) override { lines.emplace_back(text); }
  std::vector<std::string> lines;
};

// A new empty directory, removed in the end.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = std::filesystem::temp_directory_path() / "kestro-test-XXXXXX";
    if (mkdtemp(name.data())) path_ = name;
  }
  ~TemporaryDirectory() {
    if (!path_.empty()) std::filesystem::remove_all(path_);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

struct FakePlatform {
  EmptyAccessibility accessibility;
  EmptyWindowServer windowServer;
  EmptyWorkspace workspace;
  MemoryDefaultsDatabase defaults;
  NoChildProcesses childProcesses;
  NoFiles files;
  ManualFileEvents fileEvents;
  NoPowerManagement powerManagement;
  NoAlerts alerts;
  UnseenStatusBar statusBar;
  NoGlobalShortcuts globalShortcuts;
  NoAppleEvents appleEvents;
  DirectControlService controlService;
  AlwaysLoginItem loginItems;
  NotificationCenter notificationCenter;
  NoUserNotifications userNotifications;
  NoTimeEntryEditors timeEntryEditors;
  MemoryOutput standardOutput;
  ManualRunLoop runLoop;
  MemoryLog log;
  MemoryTranscript transcript;
  PropertyListDictionary productConditions;
  TemporaryDirectory directory;
  Platform platform{.accessibility = accessibility,
                    .windowServer = windowServer,
                    .workspace = workspace,
                    .defaults = defaults,
                    .childProcesses = childProcesses,
                    .files = files,
                    .fileEvents = fileEvents,
                    .powerManagement = powerManagement,
                    .alerts = alerts,
                    .statusBar = statusBar,
                    .globalShortcuts = globalShortcuts,
                    .appleEvents = appleEvents,
                    .controlService = controlService,
                    .loginItems = loginItems,
                    .notificationCenter = notificationCenter,
                    .userNotifications = userNotifications,
                    .timeEntryEditors = timeEntryEditors,
                    .standardOutput = standardOutput,
                    .clock = runLoop,
                    .runLoop = runLoop,
                    .log = log,
                    .transcript = transcript,
                    .mainBundle = {},
                    .relaunchCommands = {},
                    .processIdentifier = 501,
                    .operatingSystemVersion = {},
                    .operatingSystemMajorVersion = 0,
                    .timeZone = TimeZone::utc(),
                    .random = [] { return 0; },
                    .arguments = {},
                    .preferredLanguages = {"en"},
                    .dataDirectory = directory.path(),
                    .productConditions = productConditions};
};

}  // namespace kestro::fakes
