#include "linux/shell/DesktopAppearance.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* portalObject = "/org/freedesktop/portal/desktop";
constexpr const char* portalSettings = "org.freedesktop.portal.Settings";
constexpr const char* appearanceGroup = "org.freedesktop.appearance";
constexpr const char* colourScheme = "color-scheme";
constexpr const char* xfceSettings = "org.xfce.Xfconf";
constexpr const char* xfceObject = "/org/xfce/Xfconf";
constexpr const char* xfceChannel = "xsettings";
constexpr const char* xfceTheme = "/Net/ThemeName";
constexpr std::chrono::milliseconds longestFirstWait{200};
constexpr std::uint64_t longestAnswer = 2'000'000;  // microseconds

// 1: dark, 2: light, 0: no preference. The portal wraps the value once or, when it was asked by the
// older question, twice.
std::optional<bool> readScheme(sd_bus_message* message) {
  while (true) {
    char type = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message, &type, &contents) <= 0) return std::nullopt;
    if (type == 'v') {
      if (sd_bus_message_enter_container(message, 'v', contents) <= 0) return std::nullopt;
      continue;
    }
    std::uint32_t scheme = 0;
    if (type != 'u' || sd_bus_message_read(message, "u", &scheme) <= 0) return std::nullopt;
    return scheme == 0 ? std::nullopt : std::optional(scheme == 1);
  }
}

std::optional<bool> readTheme(sd_bus_message* message) {
  const char* name = nullptr;
  if (sd_bus_message_read(message, "v", "s", &name) <= 0) return std::nullopt;
  std::string lower = name;
  std::ranges::transform(lower, lower.begin(), [](unsigned char letter) {
    return static_cast<char>(std::tolower(letter));
  });
  return lower.find("dark") != std::string::npos;
}

bool isFailure(sd_bus_message* reply) {
  return sd_bus_message_is_method_error(reply, nullptr) != 0;
}

}  // namespace

DesktopAppearance::DesktopAppearance(BusConnection& sessionBus) : sessionBus_(sessionBus) {
  sessionBus_.watch(
      this, [this](sd_bus* bus) { ask(bus); },
      [this] {
        slots_.clear();
        answersToCome_ = 0;
      });
  if (sessionBus_.get()) {
    serveBus(sessionBus_.get(), longestFirstWait, [this] { return answersToCome_ == 0; });
  }
}

DesktopAppearance::~DesktopAppearance() {
  sessionBus_.forget(this);
}

std::optional<bool> DesktopAppearance::isDark() const {
  return portalIsDark_ ? portalIsDark_ : themeIsDark_;
}

void DesktopAppearance::ask(sd_bus* bus) {
  const auto keep = [this](sd_bus_slot* slot) { slots_.emplace_back(slot); };
  sd_bus_slot* slot = nullptr;
  sd_bus_match_signal_async(bus, &slot, portal, portalObject, portalSettings, "SettingChanged",
                            onPortalChange, nullptr, this);
  keep(std::exchange(slot, nullptr));
  sd_bus_match_signal_async(bus, &slot, xfceSettings, xfceObject, xfceSettings, "PropertyChanged",
                            onThemeChange, nullptr, this);
  keep(std::exchange(slot, nullptr));
  // Nothing is started for the sake of a colour.
  for (const bool isPortal : {true, false}) {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_call(
        bus, &message, isPortal ? portal : xfceSettings, isPortal ? portalObject : xfceObject,
        isPortal ? portalSettings : xfceSettings, isPortal ? "Read" : "GetProperty");
    const MessagePointer request(message);
    if (!request) continue;
    sd_bus_message_set_auto_start(message, 0);
    sd_bus_message_append(message, "ss", isPortal ? appearanceGroup : xfceChannel,
                          isPortal ? colourScheme : xfceTheme);
    sd_bus_call_async(bus, &slot, message, isPortal ? onPortalAnswer : onThemeAnswer, this,
                      longestAnswer);
    keep(std::exchange(slot, nullptr));
    ++answersToCome_;
  }
}

void DesktopAppearance::take(std::optional<bool>& known, std::optional<bool> now) {
  const auto before = isDark();
  known = now;
  if (observer_ && isDark() != before) observer_();
}

int DesktopAppearance::onPortalAnswer(sd_bus_message* reply, void* appearance, sd_bus_error*) {
  auto* self = static_cast<DesktopAppearance*>(appearance);
  --self->answersToCome_;
  if (!isFailure(reply)) self->take(self->portalIsDark_, readScheme(reply));
  return 0;
}

int DesktopAppearance::onPortalChange(sd_bus_message* signal, void* appearance, sd_bus_error*) {
  auto* self = static_cast<DesktopAppearance*>(appearance);
  const char* group = nullptr;
  const char* key = nullptr;
  if (sd_bus_message_read(signal, "ss", &group, &key) <= 0) return 0;
  if (std::string_view(group) != appearanceGroup || std::string_view(key) != colourScheme) return 0;
  self->take(self->portalIsDark_, readScheme(signal));
  return 0;
}

int DesktopAppearance::onThemeAnswer(sd_bus_message* reply, void* appearance, sd_bus_error*) {
  auto* self = static_cast<DesktopAppearance*>(appearance);
  --self->answersToCome_;
  if (!isFailure(reply)) self->take(self->themeIsDark_, readTheme(reply));
  return 0;
}

int DesktopAppearance::onThemeChange(sd_bus_message* signal, void* appearance, sd_bus_error*) {
  auto* self = static_cast<DesktopAppearance*>(appearance);
  const char* channel = nullptr;
  const char* property = nullptr;
  if (sd_bus_message_read(signal, "ss", &channel, &property) <= 0) return 0;
  if (std::string_view(channel) != xfceChannel || std::string_view(property) != xfceTheme) return 0;
  self->take(self->themeIsDark_, readTheme(signal));
  return 0;
}

}  // namespace kestro
