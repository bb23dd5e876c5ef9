// Requests of other programs on a scripted desktop: steps make them. Main thread only.
#pragma once

#include "platform/AppleEvents.h"

namespace kestro {

class SceneAppleEvents final : public AppleEvents {
 public:
  void setCommandHandler(CommandHandler handler) override { commandHandler_ = std::move(handler); }
  void setGetURLHandler(URLHandler handler) override { urlHandler_ = std::move(handler); }

  void send(const std::string& implementingClass, const PropertyListDictionary& arguments) const {
    if (commandHandler_) commandHandler_(implementingClass, arguments);
  }
  void openURL(const std::string& address) const {
    if (urlHandler_) urlHandler_(address);
  }
  // The process that got them is gone.
  void beginNextLife() {
    commandHandler_ = nullptr;
    urlHandler_ = nullptr;
  }

 private:
  CommandHandler commandHandler_;
  URLHandler urlHandler_;
};

}  // namespace kestro
