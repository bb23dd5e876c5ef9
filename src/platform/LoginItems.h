// Whether the session starts the helper when the user logs in. Main thread only.
#pragma once

namespace kestro {

class LoginItems {
 public:
  virtual ~LoginItems() = default;
  virtual bool startsAtLogin() const = 0;
  virtual void setStartsAtLogin(bool starts) = 0;
};

}  // namespace kestro
