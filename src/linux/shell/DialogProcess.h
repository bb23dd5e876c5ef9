// One window of KestroDialogs, a program of the helper's own that is started for each: the helper
// itself has no toolkit. They speak in lines of JSON (docs/shell.md, "Windows"). Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "linux/process/LineProcess.h"
#include "linux/shell/DesktopAppearance.h"

namespace kestro {

// What all windows need to be shown.
struct DialogSettings {
  LinuxRunLoop& runLoop;
  SystemLog& log;
  DesktopAppearance& appearance;
  std::string program;  // the path of KestroDialogs
  std::string language;
};

class DialogProcess {
 public:
  using Message = std::function<void(const nlohmann::json& message)>;
  using Failed = std::function<void()>;

  // Shows the window that the request describes. `message` gets what it says, until the object is
  // destroyed; `failed` is called once, later, when it has ended or cannot be shown. Either may
  // destroy the object.
  DialogProcess(const DialogSettings& settings, nlohmann::json request, Message message,
                Failed failed);
  ~DialogProcess();
  DialogProcess(const DialogProcess&) = delete;
  DialogProcess& operator=(const DialogProcess&) = delete;

  void send(const nlohmann::json& message);
  void bringToFront() { send({{"raise", true}}); }

 private:
  void take(const std::string& line);

  Message message_;
  Failed failed_;
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
  std::unique_ptr<LineProcess> process_;
};

}  // namespace kestro
