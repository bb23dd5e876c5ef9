#include "linux/shell/StatusNotifierItem.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "linux/shell/TrayPixmap.h"
#include "linux/shell/TrayText.h"

namespace kestro {
namespace {

constexpr const char* itemObject = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* panelWatcher = "org.kde.StatusNotifierWatcher";
constexpr const char* panelWatcherObject = "/StatusNotifierWatcher";
constexpr const char* usualTitle = "Kestro Tracker";
constexpr std::array<int, 4> pixmapSizes{16, 22, 32, 48};

std::string itemName() {
  return "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1";
}

TrayIcon trayIconOf(const std::string& image) {
  if (image == "kestro.paused") return TrayIcon::paused;
  return image == "kestro.timer" ? TrayIcon::timer : TrayIcon::tracking;
}

int onItemProperty(sd_bus*, const char*, const char*, const char* property, sd_bus_message* reply,
                   void* item, sd_bus_error*) {
  try {
    return static_cast<const StatusNotifierItem*>(item)->readProperty(property, reply);
  } catch (const std::exception&) {
    return -EIO;
  }
}

// The item is its menu; panels open that themselves.
int onActivation(sd_bus_message* call, void*, sd_bus_error*) {
  return sd_bus_reply_method_return(call, "");
}

sd_bus_vtable itemProperty(const char* name, const char* signature) {
  return SD_BUS_PROPERTY(name, signature, onItemProperty, 0, 0);
}
sd_bus_vtable activation(const char* name, const char* signature) {
  return SD_BUS_METHOD(name, signature, "", onActivation, SD_BUS_VTABLE_UNPRIVILEGED);
}

const std::array itemMembers{
    sd_bus_vtable SD_BUS_VTABLE_START(0),
    itemProperty("Category", "s"),
    itemProperty("Id", "s"),
    itemProperty("Title", "s"),
    itemProperty("Status", "s"),
    itemProperty("WindowId", "i"),
    itemProperty("IconName", "s"),
    itemProperty("IconThemePath", "s"),
    itemProperty("IconPixmap", "a(iiay)"),
    itemProperty("OverlayIconName", "s"),
    itemProperty("OverlayIconPixmap", "a(iiay)"),
    itemProperty("AttentionIconName", "s"),
    itemProperty("AttentionIconPixmap", "a(iiay)"),
    itemProperty("AttentionMovieName", "s"),
    itemProperty("ToolTip", "(sa(iiay)ss)"),
    itemProperty("ItemIsMenu", "b"),
    itemProperty("Menu", "o"),
    itemProperty("XAyatanaLabel", "s"),
    itemProperty("XAyatanaLabelGuide", "s"),
    activation("Activate", "ii"),
    activation("SecondaryActivate", "ii"),
    activation("ContextMenu", "ii"),
    activation("Scroll", "is"),
    sd_bus_vtable SD_BUS_SIGNAL("NewIcon", "", 0),
    sd_bus_vtable SD_BUS_SIGNAL("NewTitle", "", 0),
    sd_bus_vtable SD_BUS_SIGNAL("NewToolTip", "", 0),
    sd_bus_vtable SD_BUS_SIGNAL("NewStatus", "s", 0),
    sd_bus_vtable SD_BUS_SIGNAL("XAyatanaNewLabel", "ss", 0),
    sd_bus_vtable SD_BUS_VTABLE_END,
};

}  // namespace

StatusNotifierItem::StatusNotifierItem(BusConnection& sessionBus, LinuxRunLoop& runLoop,
                                       DesktopAppearance& appearance, std::string iconDirectory,
                                       StatusItemProperties properties,
                                       StatusItemDelegate& delegate)
    : sessionBus_(sessionBus),
      runLoop_(runLoop),
      appearance_(appearance),
      iconDirectory_(std::move(iconDirectory)),
      properties_(std::move(properties)),
      menu_(runLoop, delegate) {
  appearance_.observe([this] {
    announce("NewIcon");
    if (appearanceObserver_) appearanceObserver_();
  });
  sessionBus_.watch(
      this, [this](sd_bus* bus) { connect(bus); }, [this] { disconnect(); });
}

StatusNotifierItem::~StatusNotifierItem() {
  sessionBus_.forget(this);
  appearance_.observe(nullptr);
  if (bus_) sd_bus_release_name(bus_, itemName().c_str());
}

void StatusNotifierItem::connect(sd_bus* bus) {
  bus_ = bus;
  sd_bus_slot* slot = nullptr;
  sd_bus_add_object_vtable(bus, &slot, itemObject, itemInterface, itemMembers.data(), this);
  object_.reset(std::exchange(slot, nullptr));
  menu_.connect(bus);
  sd_bus_request_name(bus, itemName().c_str(), 0);
  const std::string match =
      "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
      "member='NameOwnerChanged',arg0='" +
      std::string(panelWatcher) + "'";
  sd_bus_add_match(bus, &slot, match.c_str(), onWatcherChange, this);
  watcherMatch_.reset(slot);
  registerWithPanel();
}

void StatusNotifierItem::disconnect() {
  menu_.disconnect();
  watcherMatch_.reset();
  object_.reset();
  bus_ = nullptr;
}

int StatusNotifierItem::onWatcherChange(sd_bus_message* signal, void* item, sd_bus_error*) {
  const char* name = nullptr;
  const char* before = nullptr;
  const char* now = nullptr;
  if (sd_bus_message_read(signal, "sss", &name, &before, &now) > 0 && *now) {
    static_cast<const StatusNotifierItem*>(item)->registerWithPanel();
  }
  return 0;
}

// Nobody is started for it, and nobody waits for the answer.
void StatusNotifierItem::registerWithPanel() const {
  if (!bus_) return;
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus_, &message, panelWatcher, panelWatcherObject, panelWatcher,
                                 "RegisterStatusNotifierItem");
  const MessagePointer request(message);
  if (!request) return;
  sd_bus_message_set_auto_start(message, 0);
  sd_bus_message_set_expect_reply(message, 0);
  sd_bus_message_append(message, "s", itemName().c_str());
  sd_bus_send(bus_, message, nullptr);
}

void StatusNotifierItem::announce(const char* signal) const {
  if (bus_) sd_bus_emit_signal(bus_, itemObject, itemInterface, signal, "");
}

void StatusNotifierItem::setProperties(StatusItemProperties properties) {
  const StatusItemProperties before = std::exchange(properties_, std::move(properties));
  if (!bus_) return;
  const bool isTextNew = before.title != properties_.title;
  const bool isImageNew = before.image != properties_.image;
  if (isImageNew) announce("NewIcon");
  if (isTextNew || isImageNew) announce("NewToolTip");
  if (isTextNew) {
    announce("NewTitle");
    sd_bus_emit_signal(bus_, itemObject, itemInterface, "XAyatanaNewLabel", "ss", text().c_str(),
                       "");
  }
  if (before.isVisible != properties_.isVisible) {
    sd_bus_emit_signal(bus_, itemObject, itemInterface, "NewStatus", "s",
                       properties_.isVisible ? "Active" : "Passive");
  }
  updateMenuSoon();
}

// Whoever changes the item is in the middle of something: the rows are asked for afterwards.
void StatusNotifierItem::updateMenuSoon() {
  if (std::exchange(isMenuUpdatePending_, true)) return;
  runLoop_.post([this] {
    isMenuUpdatePending_ = false;
    menu_.update();
  });
}

void StatusNotifierItem::observeEffectiveAppearance(std::function<void()> observer) {
  appearanceObserver_ = std::move(observer);
}

std::string StatusNotifierItem::text() const {
  return trayText(properties_.title, properties_.maxWidth);
}

std::string StatusNotifierItem::titleText() const {
  const std::string shown = text();
  return shown.empty() ? usualTitle : shown;
}

int StatusNotifierItem::appendPixmaps(sd_bus_message* reply) const {
  const auto isDark = appearance_.isDark();
  const TrayColour colour = !isDark   ? TrayColour::grey
                            : *isDark ? TrayColour::light
                                      : TrayColour::dark;
  sd_bus_message_open_container(reply, 'a', "(iiay)");
  for (const int size : pixmapSizes) {
    const Pixmap pixmap = drawTrayIcon(trayIconOf(properties_.image), size, colour);
    sd_bus_message_open_container(reply, 'r', "iiay");
    sd_bus_message_append(reply, "ii", size, size);
    sd_bus_message_append_array(reply, 'y', pixmap.bytes.data(), pixmap.bytes.size());
    sd_bus_message_close_container(reply);
  }
  return sd_bus_message_close_container(reply);
}

int StatusNotifierItem::readProperty(std::string_view name, sd_bus_message* reply) const {
  const auto textReply = [reply](const std::string& value) {
    return sd_bus_message_append(reply, "s", value.c_str());
  };
  if (name == "Category") return textReply("ApplicationStatus");
  if (name == "Id") return textReply("KestroHelper");
  if (name == "Title") return textReply(titleText());
  if (name == "Status") return textReply(properties_.isVisible ? "Active" : "Passive");
  if (name == "WindowId") return sd_bus_message_append(reply, "i", 0);
  if (name == "IconName") return textReply(themedIconName(properties_.image));
  if (name == "IconThemePath") return textReply(iconDirectory_);
  if (name == "IconPixmap") return appendPixmaps(reply);
  if (name.ends_with("Pixmap")) return sd_bus_message_append(reply, "a(iiay)", 0);
  if (name == "ToolTip") {
    return sd_bus_message_append(reply, "(sa(iiay)ss)", "", 0, titleText().c_str(), "");
  }
  if (name == "ItemIsMenu") return sd_bus_message_append(reply, "b", 1);
  if (name == "Menu") return sd_bus_message_append(reply, "o", DBusMenu::objectPath);
  if (name == "XAyatanaLabel") return textReply(text());
  return textReply("");
}

}  // namespace kestro
