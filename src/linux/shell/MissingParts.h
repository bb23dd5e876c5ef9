// Parts of the platform that the live desktop does not have yet and that have no file of their own.
// The helper runs without them; one log line names all that is missing.
#pragma once

#include <string_view>

#include "platform/Alerts.h"
#include "platform/AppleEvents.h"
#include "platform/GlobalShortcuts.h"
#include "platform/LoginItems.h"
#include "platform/StatusBar.h"

namespace kestro {

constexpr std::string_view missingPartsMessage =
    "Not available on this desktop yet: status item and menu, alerts, notifications, time entry "
    "editor, calls, file events, shortcuts, scripting commands, launch at login.";

class MissingAlerts final : public Alerts {
 public:
  AlertAnswer runModal(const Alert& alert) override {
    return {alert.buttons.size() - 1, alert.suppressionIsChecked};
  }
};

class MissingStatusBar final : public StatusBar {
 public:
  std::unique_ptr<StatusItem> makeStatusItem(StatusItemProperties properties,
                                             StatusItemDelegate&) override {
    return std::make_unique<Item>(std::move(properties));
  }

 private:
  class Item final : public StatusItem {
   public:
    explicit Item(StatusItemProperties properties) : properties_(std::move(properties)) {}
    const StatusItemProperties& properties() const override { return properties_; }
    void setProperties(StatusItemProperties properties) override {
      properties_ = std::move(properties);
    }
    void observeEffectiveAppearance(std::function<void()>) override {}

   private:
    StatusItemProperties properties_;
  };
};

class MissingGlobalShortcuts final : public GlobalShortcuts {
 public:
  std::unique_ptr<GlobalShortcut> grab(const KeyEquivalent&, std::function<void()>) override {
    return nullptr;
  }
};

class MissingAppleEvents final : public AppleEvents {
 public:
  void setCommandHandler(CommandHandler) override {}
  void setGetURLHandler(URLHandler) override {}
};

// Nobody is asked about what cannot be set.
class MissingLoginItems final : public LoginItems {
 public:
  bool startsAtLogin() const override { return true; }
  void setStartsAtLogin(bool) override {}
};

}  // namespace kestro
