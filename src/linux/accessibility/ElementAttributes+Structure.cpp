// Where an element stands in its tree and on the screen, and the attributes of windows.
#include <algorithm>

#include "linux/accessibility/ElementAttributes.h"
#include "linux/windows/ScreenCoordinates.h"

namespace kestro {
namespace {

// How far a window may lie above an element.
constexpr int deepestElement = 100;
constexpr std::size_t mostOrigins = 1024;

}  // namespace

AccessibilityResult<AttributeValue> ElementAttributes::elements(
    const AtspiElement& owner, const std::vector<AtspiObject>& objects) const {
  AttributeValue::List list;
  for (const AtspiObject& object : objects) {
    list.emplace_back(makeObjectElement(owner.process(), object));
  }
  return AttributeValue(std::move(list));
}

// What an element of a Chromium process is part of; absent for elements of others. A request for
// one that is asked about first, none later.
std::optional<ElementAttributes::Origin> ElementAttributes::chromiumOrigin(
    const AtspiObject& object) {
  if (applications_.toolkit(object) != AtspiToolkit::chromium) return std::nullopt;
  const bool isOutdated = originsOf_ != applications_.connectionNumber();
  if (isOutdated || origins_.size() > mostOrigins) origins_.clear();
  originsOf_ = applications_.connectionNumber();
  const auto known = origins_.find(object);
  if (known != origins_.end()) return known->second;
  const auto attributes = reader_.attributes(object);
  if (!attributes.value) return std::nullopt;
  const auto found = attributes.value->find("class");
  Origin origin;
  if (found != attributes.value->end()) origin.className = found->second;
  origin.isPage = attributes.value->contains("tag");
  origins_[object] = origin;
  return origin;
}

// The class of a container in a Chromium browser's own controls, empty for other elements.
std::string ElementAttributes::viewClass(const AtspiObject& object) {
  const auto origin = chromiumOrigin(object);
  return origin && !origin->isPage ? origin->className : std::string();
}

AccessibilityResult<AttributeValue> ElementAttributes::children(const AtspiElement& element) {
  auto objects = reader_.children(element.object());
  if (!objects.value) return objects.error;
  AttributeValue::List list;
  const auto role = reader_.role(element.object());
  const bool mayBeView = role.value == AtspiRole::panel && objects.value->size() > 1;
  // An empty background, there since 2025, that the designed platform does not show and that would
  // stand where the toolbar's container is looked for.
  if (mayBeView && viewClass(element.object()) == "BrowserView" &&
      viewClass(objects.value->front()) == "MainBackgroundRegionView") {
    objects.value->erase(objects.value->begin());
  }
  // The page is looked for below a scroll area of the window before a hit test is tried.
  if (role.value == AtspiRole::frame && reader_.activeDocument(element.object()).value) {
    list.emplace_back(
        makeElement(AtspiElement::Kind::pageScrollArea, element.process(), element.object()));
  }
  for (const AtspiObject& object : *objects.value) {
    list.emplace_back(makeObjectElement(element.process(), object));
  }
  return AttributeValue(std::move(list));
}

AccessibilityResult<AttributeValue> ElementAttributes::contents(const AtspiElement& element) {
  const auto role = reader_.role(element.object());
  if (!role.value) return role.error;
  if (*role.value != AtspiRole::scrollPane) return AccessibilityError::attributeUnsupported;
  return children(element);
}

AccessibilityResult<AttributeValue> ElementAttributes::parent(const AtspiElement& element) {
  // The application's windows are known in most samples, their parent then costs nothing.
  if (windows_.isTopLevel(element.object(), element.process())) {
    return AttributeValue(makeElement(AtspiElement::Kind::application, element.process()));
  }
  const auto parent = reader_.parent(element.object());
  if (!parent.value) return parent.error;
  return AttributeValue(makeObjectElement(element.process(), *parent.value));
}

AccessibilityResult<AttributeValue> ElementAttributes::window(const AtspiElement& element) {
  AtspiObject object = element.object();
  for (int depth = 0; depth < deepestElement; ++depth) {
    const auto parent = reader_.parent(object);
    if (!parent.value) return parent.error;
    if (parent.value->path == atspiRootPath) {
      return AttributeValue(makeObjectElement(element.process(), object));
    }
    object = *parent.value;
  }
  return AccessibilityError::noValue;
}

Point ElementAttributes::windowOffset(const AtspiElement& element) {
  if (applications_.toolkit(element.object()) != AtspiToolkit::gtk4) return {};
  const auto main = windows_.mainWindow(element.process());
  const auto window = main.value ? windows_.windowOf(*main.value, element.process()) : std::nullopt;
  return window ? window->bounds.origin : Point{};
}

AccessibilityResult<Rect> ElementAttributes::bounds(const AtspiElement& element) {
  const auto& monitors = windows_.snapshot().monitors;
  if (const auto window = windows_.windowOf(element.object(), element.process())) {
    return accessibilityBounds(window->bounds, monitors);
  }
  auto extents = reader_.extents(element.object());
  if (!extents.value) return extents.error;
  const Point offset = windowOffset(element);
  extents.value->origin.x += offset.x;
  extents.value->origin.y += offset.y;
  return accessibilityBounds(*extents.value, monitors);
}

AccessibilityResult<AttributeValue> ElementAttributes::position(const AtspiElement& element) {
  const auto rectangle = bounds(element);
  if (!rectangle.value) return rectangle.error;
  return AttributeValue(rectangle.value->origin);
}

AccessibilityResult<AttributeValue> ElementAttributes::size(const AtspiElement& element) {
  const auto rectangle = bounds(element);
  if (!rectangle.value) return rectangle.error;
  return AttributeValue(rectangle.value->size);
}

AccessibilityResult<AttributeValue> ElementAttributes::state(const AtspiElement& element,
                                                             AtspiState state) {
  const auto states = reader_.states(element.object());
  if (!states.value) return states.error;
  return AttributeValue(static_cast<std::int64_t>(states.value->has(state) ? 1 : 0));
}

AccessibilityResult<AttributeValue> ElementAttributes::isModal(const AtspiElement& element) {
  const auto states = reader_.states(element.object());
  if (!states.value) return states.error;
  const auto window = windows_.windowOf(element.object(), element.process());
  return AttributeValue(states.value->has(AtspiState::modal) || (window && window->isModal));
}

AccessibilityResult<AttributeValue> ElementAttributes::isFullScreen(const AtspiElement& element) {
  const auto window = windows_.windowOf(element.object(), element.process());
  if (!window) return AccessibilityError::attributeUnsupported;
  const auto& monitors = windows_.snapshot().monitors;
  const bool coversMonitor = std::ranges::find(monitors, window->bounds) != monitors.end();
  return AttributeValue(window->isFullScreen || coversMonitor);
}

AccessibilityResult<AttributeValue> ElementAttributes::isMinimized(const AtspiElement& element) {
  const auto window = windows_.windowOf(element.object(), element.process());
  if (!window) return AccessibilityError::attributeUnsupported;
  return AttributeValue(window->isMinimized);
}

AccessibilityResult<AttributeValue> ElementAttributes::isMain(const AtspiElement& element) {
  const auto main = windows_.mainWindow(element.process());
  if (!main.value) return main.error;
  return AttributeValue(*main.value == element.object());
}

// The page of a browser's window. Applications that edit files do not tell which, and the page of a
// web-view application is the application itself.
AccessibilityResult<AttributeValue> ElementAttributes::document(const AtspiElement& element) {
  const auto role = reader_.role(element.object());
  if (!role.value) return role.error;
  if (*role.value != AtspiRole::frame) return AccessibilityError::attributeUnsupported;
  const auto window = windows_.windowOf(element.object(), element.process());
  if (window && !identity_.isBrowser(element.process(), *window)) {
    return AccessibilityError::noValue;
  }
  const auto page = reader_.activeDocument(element.object());
  if (!page.value) return page.error;
  const auto address = pageAddress(*page.value);
  if (!address.value) return address.error;
  // For the next sample: Chromium's tree learns of an address whose fragment alone has changed when
  // something makes the page look at itself, and a hit test does.
  if (window && applications_.toolkit(element.object()) == AtspiToolkit::chromium) {
    const auto& [origin, size] = window->bounds;
    reader_.touch(*page.value, {origin.x + size.width / 2, origin.y + size.height / 2});
  }
  return AttributeValue(*address.value);
}

AccessibilityResult<AttributeValue> ElementAttributes::isSelected(const AtspiElement& element) {
  const auto states = reader_.states(element.object());
  if (!states.value) return states.error;
  return AttributeValue(states.value->has(AtspiState::selected));
}

AccessibilityResult<AttributeValue> ElementAttributes::selectedRows(const AtspiElement& element) {
  const auto objects = reader_.selectedChildren(element.object());
  if (!objects.value) return objects.error;
  return elements(element, *objects.value);
}

AccessibilityResult<AttributeValue> ElementAttributes::isEnabled(const AtspiElement& element) {
  const auto states = reader_.states(element.object());
  if (!states.value) return states.error;
  return AttributeValue(states.value->has(AtspiState::enabled) ||
                        states.value->has(AtspiState::sensitive));
}

AccessibilityResult<AttributeValue> ElementAttributes::isFocused(const AtspiElement& element) {
  const auto states = reader_.states(element.object());
  if (!states.value) return states.error;
  return AttributeValue(states.value->has(AtspiState::focused));
}

}  // namespace kestro
