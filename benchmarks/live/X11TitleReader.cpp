// The floor of the live benchmark: reads the active window's title and process once a second, and
// nothing else, with two round trips to the X server. Usage: x11_title_reader SAMPLES
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace {

struct ReplyDeleter {
  void operator()(void* reply) const { std::free(reply); }
};
using Property = std::unique_ptr<xcb_get_property_reply_t, ReplyDeleter>;

class TitleReader {
 public:
  TitleReader() : connection_(xcb_connect(nullptr, nullptr)) {
    if (!isConnected()) return;
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    activeWindow_ = atom("_NET_ACTIVE_WINDOW");
    name_ = atom("_NET_WM_NAME");
    process_ = atom("_NET_WM_PID");
  }
  ~TitleReader() { xcb_disconnect(connection_); }
  TitleReader(const TitleReader&) = delete;
  TitleReader& operator=(const TitleReader&) = delete;

  bool isConnected() const { return xcb_connection_has_error(connection_) == 0; }

  std::string read() const {
    const auto window = number(reply(request(root_, activeWindow_)));
    const auto name = request(window, name_);
    const auto process = request(window, process_);
    const Property title = reply(name);
    std::string text = std::to_string(number(reply(process))) + " ";
    if (title) {
      text.append(static_cast<const char*>(xcb_get_property_value(title.get())),
                  static_cast<std::size_t>(xcb_get_property_value_length(title.get())));
    }
    return text;
  }

 private:
  xcb_atom_t atom(std::string_view name) const {
    const auto cookie =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, ReplyDeleter> found(
        xcb_intern_atom_reply(connection_, cookie, nullptr));
    return found ? found->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  }
  xcb_get_property_cookie_t request(xcb_window_t window, xcb_atom_t property) const {
    return xcb_get_property(connection_, 0, window, property, XCB_ATOM_ANY, 0, 1024);
  }
  Property reply(xcb_get_property_cookie_t cookie) const {
    return Property(xcb_get_property_reply(connection_, cookie, nullptr));
  }
  static std::uint32_t number(const Property& property) {
    std::uint32_t value = 0;
    if (property && xcb_get_property_value_length(property.get()) >= 4) {
      std::memcpy(&value, xcb_get_property_value(property.get()), sizeof value);
    }
    return value;
  }

  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
  xcb_atom_t activeWindow_ = 0;
  xcb_atom_t name_ = 0;
  xcb_atom_t process_ = 0;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  const long samples = argumentCount > 1 ? std::strtol(arguments[1], nullptr, 10) : 10;
  const TitleReader reader;
  if (!reader.isConnected()) {
    std::cerr << "x11_title_reader: no X server\n";
    return 1;
  }
  for (long sample = 0; sample < samples; ++sample) {
    std::cout << reader.read() << std::endl;
    std::this_thread::sleep_for(std::chrono::seconds(1));
  }
  return 0;
}
