// Whether the session starts the helper, by the XDG autostart rules: a desktop file of the user's
// own, which says Hidden=true where they do not want it. Main thread only.
#pragma once

#include <filesystem>
#include <string>

#include "platform/LoginItems.h"
#include "platform/SystemLog.h"

namespace kestro {

class LinuxLoginItems final : public LoginItems {
 public:
  // `file`: the desktop file; `executable`: what it starts.
  LinuxLoginItems(std::filesystem::path file, std::string executable, SystemLog& log)
      : file_(std::move(file)), executable_(std::move(executable)), log_(log) {}

  bool startsAtLogin() const override;
  void setStartsAtLogin(bool starts) override;

 private:
  std::filesystem::path file_;
  std::string executable_;
  SystemLog& log_;
};

}  // namespace kestro
