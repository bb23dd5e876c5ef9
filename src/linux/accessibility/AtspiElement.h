// What the live desktop knows an element by. Plain value types behind UIElement handles.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "linux/accessibility/AtspiObject.h"
#include "platform/Accessibility.h"

namespace kestro {

class AtspiElement final : public UIElementReference {
 public:
  enum class Kind {
    systemWide,
    application,  // named by its process, so that it can be made without asking anyone
    object,
    // Stands between a browser's window and the page that it shows: the designed platform has a
    // scroll area there. `object` is the window's.
    pageScrollArea,
  };

  AtspiElement(Kind kind, ProcessIdentifier process, AtspiObject object)
      : kind_(kind), process_(process), object_(std::move(object)) {}

  Kind kind() const { return kind_; }
  ProcessIdentifier process() const { return process_; }
  const AtspiObject& object() const { return object_; }

  bool isEqual(const UIElementReference& other) const override {
    const auto& element = static_cast<const AtspiElement&>(other);
    return kind_ == element.kind_ && process_ == element.process_ && object_ == element.object_;
  }
  std::size_t hash() const override {
    return std::hash<std::string>()(object_.path) * 31 +
           std::hash<std::string>()(object_.busName) * 7 + static_cast<std::size_t>(process_);
  }
  std::string description() const override {
    switch (kind_) {
      case Kind::systemWide:
        return "system-wide element";
      case Kind::application:
        return "application " + std::to_string(process_);
      case Kind::object:
        return object_.busName + object_.path;
      case Kind::pageScrollArea:
        return object_.busName + object_.path + " page";
    }
    return {};
  }

 private:
  Kind kind_;
  ProcessIdentifier process_;
  AtspiObject object_;
};

// What the live desktop knows an element of its own by.
inline const AtspiElement& atspiElementOf(const UIElement& element) {
  return static_cast<const AtspiElement&>(element.reference());
}

inline UIElement makeElement(AtspiElement::Kind kind, ProcessIdentifier process,
                             AtspiObject object = {}) {
  return UIElement(std::make_shared<AtspiElement>(kind, process, std::move(object)));
}

// The handle of an object of that process: the application's for its root.
inline UIElement makeObjectElement(ProcessIdentifier process, const AtspiObject& object) {
  if (object.path == atspiRootPath) {
    return makeElement(AtspiElement::Kind::application, process);
  }
  return makeElement(AtspiElement::Kind::object, process, object);
}

}  // namespace kestro
