#include "linux/accessibility/AtspiWindows.h"

#include <algorithm>

namespace kestro {

AccessibilityResult<std::vector<AtspiObject>> AtspiWindows::windows(ProcessIdentifier process) {
  const auto root = applications_.root(process);
  if (!root.value) return root.error;
  auto objects = reader_.children(*root.value);
  if (objects.value || !applications_.forgetIfGone(process)) return objects;
  // The process may have another connection by now.
  const auto newRoot = applications_.root(process);
  if (!newRoot.value || *newRoot.value == *root.value) return objects;
  return reader_.children(*newRoot.value);
}

const X11Window* AtspiWindows::frontWindow(ProcessIdentifier process) {
  const X11Snapshot& snapshot = desktop_.snapshot();
  const X11Window* active = snapshot.active();
  if (active && active->process == process) return active;
  const auto found = std::ranges::find_if(snapshot.windows, [&](const X11Window& window) {
    return window.process == process && window.type == X11WindowType::ordinary;
  });
  return found == snapshot.windows.end() ? nullptr : &*found;
}

std::map<AtspiObject, X11WindowIdentifier>& AtspiWindows::matches() {
  const std::uint64_t generation = generation_.current();
  if (matchedIn_ != generation) matches_.clear();
  matchedIn_ = generation;
  return matches_;
}

AccessibleWindow AtspiWindows::accessibleWindow(const AtspiObject& object) {
  return {reader_.name(object).value, reader_.extents(object).value};
}

std::optional<AtspiObject> AtspiWindows::match(const std::vector<AtspiObject>& objects,
                                               const X11Window& window) {
  if (objects.size() == 1) return objects.front();
  if (auto known = lastMatch(objects, window)) return known;
  reader_.prefetchForMatching(objects);
  std::vector<AccessibleWindow> candidates;
  candidates.reserve(objects.size());
  for (const AtspiObject& object : objects)
    candidates.push_back(accessibleWindow(object));
  const auto best = bestMatch(candidates, window);
  return best ? std::optional(objects[*best]) : std::nullopt;
}

// A match holds as long as the title, which is read in every sample, still fits.
std::optional<AtspiObject> AtspiWindows::lastMatch(const std::vector<AtspiObject>& objects,
                                                   const X11Window& window) {
  const bool isKnown =
      lastWindow_ == window.identifier && std::ranges::find(objects, lastObject_) != objects.end();
  if (!isKnown) return std::nullopt;
  const AccessibleWindow named{reader_.name(lastObject_).value, std::nullopt};
  return matchScore(named, window) > 0 ? std::optional(lastObject_) : std::nullopt;
}

AccessibilityResult<AtspiObject> AtspiWindows::mainWindow(ProcessIdentifier process) {
  const auto objects = windows(process);
  if (!objects.value) return objects.error;
  const X11Window* window = frontWindow(process);
  if (objects.value->empty() || !window) return AccessibilityError::noValue;
  const auto found = match(*objects.value, *window);
  if (!found) return AccessibilityError::noValue;
  matches()[*found] = window->identifier;
  lastWindow_ = window->identifier;
  lastObject_ = *found;
  // Chromium shows its tree only to someone who has asked its window for attributes. Every sample
  // reads them for the window's identifier anyway.
  reader_.attributes(*found);
  return *found;
}

bool AtspiWindows::isTopLevel(const AtspiObject& object, ProcessIdentifier process) {
  const auto objects = windows(process);
  return objects.value && std::ranges::find(*objects.value, object) != objects.value->end();
}

std::optional<X11Window> AtspiWindows::windowOf(const AtspiObject& object,
                                                ProcessIdentifier process) {
  const auto known = matches().find(object);
  const X11Window* found = known != matches_.end() ? desktop_.snapshot().find(known->second)
                                                   : findWindowOf(object, process);
  if (known == matches_.end()) matches()[object] = found ? found->identifier : 0;
  return found ? std::optional(*found) : std::nullopt;
}

const X11Window* AtspiWindows::findWindowOf(const AtspiObject& object, ProcessIdentifier process) {
  if (!isTopLevel(object, process)) return nullptr;
  const AccessibleWindow accessible = accessibleWindow(object);
  const X11Window* best = nullptr;
  int bestScore = 0;
  for (const X11Window& window : desktop_.snapshot().windows) {
    const int score = window.process == process ? matchScore(accessible, window) : 0;
    if (score <= bestScore) continue;
    best = &window;
    bestScore = score;
  }
  return best;
}

}  // namespace kestro
