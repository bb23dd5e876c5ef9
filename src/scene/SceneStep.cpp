#include "scene/SceneStep.h"

namespace kestro {
namespace {

template <class Value>
void assignIfPresent(Value& target, const std::optional<Value>& value) {
  if (value) target = *value;
}

class StepApplier {
 public:
  explicit StepApplier(SceneState& state) : state_(state) {}

  void operator()(const SetStep& step) { state_.elements[step.element].update(step.changes); }
  void operator()(const FrontmostStep& step) { state_.frontmost = step.process; }
  void operator()(const WindowsStep& step) { state_.windows = step.windows; }
  void operator()(const LaunchStep& step) {
    state_.applications[step.application].isRunning = true;
    state_.launchOrder.push_back(step.application);
  }
  void operator()(const QuitStep& step) {
    if (auto* application = state_.runningApplication(step.process)) application->isRunning = false;
  }
  void operator()(const SystemStep& step) { applySystemChanges(state_.system, step); }
  void operator()(const ProductStep& step) { applyChanges(state_.product, step.changes); }
  void operator()(const PreferencesStep& step) {
    applyChanges(*(state_.*step.preferences), step.changes);
  }
  void operator()(const SuitesStep& step) {
    for (const auto& [name, changes] : step.suites) {
      ScenePreferences& suite = state_.suites[name];
      if (!changes) {
        suite.reset();
        continue;
      }
      if (!suite) suite.emplace();
      applyChanges(*suite, *changes);
    }
  }
  void operator()(const WriteFileStep& step) {
    for (const auto& [path, file] : step.files) {
      state_.files.insert_or_assign(path, file);
    }
  }
  void operator()(const RemoveFileStep& step) { state_.files.erase(step.path); }
  void operator()(const AssertionsStep& step) { state_.assertions = step.assertions; }
  // What concerns the helper alone.
  template <class OtherStep>
  void operator()(const OtherStep&) {}

 private:
  SceneState& state_;
};

}  // namespace

void applyChanges(PropertyListDictionary& dictionary, const PropertyListChanges& changes) {
  for (const auto& [key, value] : changes) {
    if (value) {
      dictionary.set(key, *value);
    } else {
      dictionary.remove(key);
    }
  }
}

void applySystemChanges(SceneSystem& system, const SystemStep& changes) {
  assignIfPresent(system.version, changes.version);
  assignIfPresent(system.languages, changes.languages);
  assignIfPresent(system.screens, changes.screens);
  assignIfPresent(system.accessibilityTrusted, changes.accessibilityTrusted);
  assignIfPresent(system.screenCaptureAccess, changes.screenCaptureAccess);
  assignIfPresent(system.requestBudget, changes.requestBudget);
}

void applyStep(SceneState& state, const SceneEvent& event) {
  std::visit(StepApplier(state), event);
}

}  // namespace kestro
