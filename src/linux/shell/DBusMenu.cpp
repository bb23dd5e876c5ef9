#include "linux/shell/DBusMenu.h"

#include <array>
#include <cerrno>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kestro {
namespace {

constexpr const char* menuInterface = "com.canonical.dbusmenu";
constexpr std::uint32_t protocolVersion = 3;
// Announcements of one opening come together; a later one is another opening.
constexpr std::chrono::milliseconds oneOpening{700};
// Nobody reads a menu for longer.
constexpr Seconds longestOpening{60};

template <int (DBusMenu::*method)(sd_bus_message*, sd_bus_error*)>
int onMenuCall(sd_bus_message* call, void* menu, sd_bus_error* error) {
  try {
    return (static_cast<DBusMenu*>(menu)->*method)(call, error);
  } catch (const std::exception&) {
    return sd_bus_error_set(error, SD_BUS_ERROR_FAILED, "The menu could not be made.");
  }
}

int onMenuProperty(sd_bus*, const char*, const char*, const char* property, sd_bus_message* reply,
                   void*, sd_bus_error*) {
  const std::string_view name = property;
  if (name == "Version") return sd_bus_message_append(reply, "u", protocolVersion);
  if (name == "IconThemePath") return sd_bus_message_append(reply, "as", 0);
  return sd_bus_message_append(reply, "s", name == "Status" ? "normal" : "ltr");
}

constexpr auto anybody = SD_BUS_VTABLE_UNPRIVILEGED;
const std::array menuMembers{
    sd_bus_vtable SD_BUS_VTABLE_START(0),
    sd_bus_vtable SD_BUS_PROPERTY("Version", "u", onMenuProperty, 0, 0),
    sd_bus_vtable SD_BUS_PROPERTY("Status", "s", onMenuProperty, 0, 0),
    sd_bus_vtable SD_BUS_PROPERTY("TextDirection", "s", onMenuProperty, 0, 0),
    sd_bus_vtable SD_BUS_PROPERTY("IconThemePath", "as", onMenuProperty, 0, 0),
    sd_bus_vtable SD_BUS_METHOD("GetLayout", "iias", "u(ia{sv}av)", onMenuCall<&DBusMenu::layout>,
                                anybody),
    sd_bus_vtable SD_BUS_METHOD("GetGroupProperties", "aias", "a(ia{sv})",
                                onMenuCall<&DBusMenu::groupProperties>, anybody),
    sd_bus_vtable SD_BUS_METHOD("GetProperty", "is", "v", onMenuCall<&DBusMenu::property>, anybody),
    sd_bus_vtable SD_BUS_METHOD("Event", "isvu", "", onMenuCall<&DBusMenu::event>, anybody),
    sd_bus_vtable SD_BUS_METHOD("EventGroup", "a(isvu)", "ai", onMenuCall<&DBusMenu::eventGroup>,
                                anybody),
    sd_bus_vtable SD_BUS_METHOD("AboutToShow", "i", "b", onMenuCall<&DBusMenu::aboutToShow>,
                                anybody),
    sd_bus_vtable SD_BUS_METHOD("AboutToShowGroup", "ai", "aiai",
                                onMenuCall<&DBusMenu::aboutToShowGroup>, anybody),
    sd_bus_vtable SD_BUS_SIGNAL("ItemsPropertiesUpdated", "a(ia{sv})a(ias)", 0),
    sd_bus_vtable SD_BUS_SIGNAL("LayoutUpdated", "ui", 0),
    sd_bus_vtable SD_BUS_SIGNAL("ItemActivationRequested", "iu", 0),
    sd_bus_vtable SD_BUS_VTABLE_END,
};

// The properties that the caller wants; empty: all.
using Wanted = std::set<std::string, std::less<>>;

Wanted readWanted(sd_bus_message* call) {
  Wanted wanted;
  if (sd_bus_message_enter_container(call, 'a', "s") <= 0) return wanted;
  const char* name = nullptr;
  while (sd_bus_message_read(call, "s", &name) > 0)
    wanted.emplace(name);
  sd_bus_message_exit_container(call);
  return wanted;
}

// Writes those properties of a row that are wanted. What is as usual need not be said, but panels
// keep what they heard earlier: so all are said each time, but for a shortcut, which cannot be none
// and is taken back by a signal of its own.
class RowWriter {
 public:
  RowWriter(sd_bus_message* message, const Wanted& wanted) : message_(message), wanted_(wanted) {}

  void write(const MenuRow& row) const {
    sd_bus_message_open_container(message_, 'a', "{sv}");
    if (row.isSeparator) {
      text("type", "separator");
    } else if (row.number != MenuRows::rootNumber) {
      text("label", row.label);
      flag("enabled", row.isEnabled);
      text("icon-name", row.iconName);
      text("toggle-type", row.isCheckable ? "checkmark" : "");
      number("toggle-state", row.isCheckable ? static_cast<int>(row.isChecked) : -1);
      shortcut(row.shortcut);
    }
    flag("visible", row.isVisible);
    if (!row.rows.empty()) text("children-display", "submenu");
    sd_bus_message_close_container(message_);
  }

 private:
  bool isWanted(const char* name) const { return wanted_.empty() || wanted_.contains(name); }
  void text(const char* name, const std::string& value) const {
    if (isWanted(name)) sd_bus_message_append(message_, "{sv}", name, "s", value.c_str());
  }
  void flag(const char* name, bool value) const {
    if (isWanted(name)) sd_bus_message_append(message_, "{sv}", name, "b", value ? 1 : 0);
  }
  void number(const char* name, int value) const {
    if (isWanted(name)) sd_bus_message_append(message_, "{sv}", name, "i", value);
  }
  void shortcut(const std::vector<std::string>& keys) const {
    if (!isWanted("shortcut") || keys.empty()) return;
    sd_bus_message_open_container(message_, 'e', "sv");
    sd_bus_message_append(message_, "s", "shortcut");
    sd_bus_message_open_container(message_, 'v', "aas");
    sd_bus_message_open_container(message_, 'a', "as");
    sd_bus_message_open_container(message_, 'a', "s");
    for (const std::string& key : keys)
      sd_bus_message_append(message_, "s", key.c_str());
    for (int container = 0; container < 4; ++container)
      sd_bus_message_close_container(message_);
  }

  sd_bus_message* message_;
  const Wanted& wanted_;
};

// Depth: 0 the row alone, negative: everything below.
void writeLayout(sd_bus_message* message, const MenuRow& row, int depth, const Wanted& wanted) {
  sd_bus_message_open_container(message, 'r', "ia{sv}av");
  sd_bus_message_append(message, "i", row.number);
  RowWriter(message, wanted).write(row);
  sd_bus_message_open_container(message, 'a', "v");
  if (depth != 0) {
    for (const MenuRow& child : row.rows) {
      sd_bus_message_open_container(message, 'v', "(ia{sv}av)");
      writeLayout(message, child, depth - 1, wanted);
      sd_bus_message_close_container(message);
    }
  }
  sd_bus_message_close_container(message);
  sd_bus_message_close_container(message);
}

void collect(const MenuRow& row, std::vector<const MenuRow*>& rows) {
  rows.push_back(&row);
  for (const MenuRow& child : row.rows)
    collect(child, rows);
}

MessagePointer replyTo(sd_bus_message* call) {
  sd_bus_message* reply = nullptr;
  sd_bus_message_new_method_return(call, &reply);
  return MessagePointer(reply);
}

int refuseNumber(sd_bus_error* error) {
  return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "The menu has no row of that number.");
}

}  // namespace

DBusMenu::DBusMenu(LinuxRunLoop& runLoop, StatusItemDelegate& delegate)
    : runLoop_(runLoop), delegate_(delegate) {}

void DBusMenu::connect(sd_bus* bus) {
  bus_ = bus;
  sd_bus_slot* slot = nullptr;
  sd_bus_add_object_vtable(bus, &slot, objectPath, menuInterface, menuMembers.data(), this);
  object_.reset(slot);
}

void DBusMenu::disconnect() {
  close();
  object_.reset();
  bus_ = nullptr;
}

bool DBusMenu::refresh() {
  MenuRow now = numbering_.rowsOf(delegate_.validatedMenu());
  if (now == root_) return false;
  root_ = std::move(now);
  ++revision_;
  return true;
}

void DBusMenu::announceRows() {
  if (!bus_) return;
  takeBackShortcuts();
  sd_bus_emit_signal(bus_, objectPath, menuInterface, "LayoutUpdated", "ui", revision_,
                     MenuRows::rootNumber);
}

void DBusMenu::takeBackShortcuts() {
  std::vector<const MenuRow*> rows;
  collect(root_, rows);
  sd_bus_message* message = nullptr;
  sd_bus_message_new_signal(bus_, &message, objectPath, menuInterface, "ItemsPropertiesUpdated");
  const MessagePointer signal(message);
  if (!signal) return;
  sd_bus_message_append(message, "a(ia{sv})", 0);
  sd_bus_message_open_container(message, 'a', "(ias)");
  bool isAny = false;
  for (const MenuRow* row : rows) {
    if (!row->shortcut.empty()) {
      withShortcut_.insert(row->number);
    } else if (withShortcut_.erase(row->number) > 0) {
      isAny = true;
      sd_bus_message_append(message, "(ias)", row->number, 1, "shortcut");
    }
  }
  sd_bus_message_close_container(message);
  if (isAny) sd_bus_send(bus_, message, nullptr);
}

void DBusMenu::update() {
  if (bus_ && refresh()) announceRows();
}

int DBusMenu::layout(sd_bus_message* call, sd_bus_error* error) {
  std::int32_t parent = 0;
  std::int32_t depth = 0;
  if (sd_bus_message_read(call, "ii", &parent, &depth) < 0) return -EINVAL;
  const Wanted wanted = readWanted(call);
  refresh();
  const MenuRow* row = findMenuRow(root_, parent);
  if (!row) return refuseNumber(error);
  const MessagePointer reply = replyTo(call);
  if (!reply) return -ENOMEM;
  sd_bus_message_append(reply.get(), "u", revision_);
  writeLayout(reply.get(), *row, depth, wanted);
  return sd_bus_send(nullptr, reply.get(), nullptr);
}

int DBusMenu::groupProperties(sd_bus_message* call, sd_bus_error*) {
  std::vector<const MenuRow*> rows;
  if (root_.rows.empty()) refresh();
  if (sd_bus_message_enter_container(call, 'a', "i") < 0) return -EINVAL;
  std::int32_t number = 0;
  while (sd_bus_message_read(call, "i", &number) > 0) {
    if (const MenuRow* row = findMenuRow(root_, number)) rows.push_back(row);
  }
  sd_bus_message_exit_container(call);
  if (rows.empty()) collect(root_, rows);
  const Wanted wanted = readWanted(call);
  const MessagePointer reply = replyTo(call);
  if (!reply) return -ENOMEM;
  sd_bus_message_open_container(reply.get(), 'a', "(ia{sv})");
  for (const MenuRow* row : rows) {
    sd_bus_message_open_container(reply.get(), 'r', "ia{sv}");
    sd_bus_message_append(reply.get(), "i", row->number);
    RowWriter(reply.get(), wanted).write(*row);
    sd_bus_message_close_container(reply.get());
  }
  sd_bus_message_close_container(reply.get());
  return sd_bus_send(nullptr, reply.get(), nullptr);
}

int DBusMenu::property(sd_bus_message* call, sd_bus_error* error) {
  std::int32_t number = 0;
  const char* name = nullptr;
  if (sd_bus_message_read(call, "is", &number, &name) < 0) return -EINVAL;
  if (root_.rows.empty()) refresh();
  const MenuRow* row = findMenuRow(root_, number);
  if (!row) return refuseNumber(error);
  const std::string_view wanted = name;
  if (wanted == "label") return sd_bus_reply_method_return(call, "v", "s", row->label.c_str());
  if (wanted == "enabled") return sd_bus_reply_method_return(call, "v", "b", row->isEnabled);
  if (wanted == "visible") return sd_bus_reply_method_return(call, "v", "b", row->isVisible);
  if (wanted == "icon-name") {
    return sd_bus_reply_method_return(call, "v", "s", row->iconName.c_str());
  }
  if (wanted == "toggle-type") {
    return sd_bus_reply_method_return(call, "v", "s", row->isCheckable ? "checkmark" : "");
  }
  if (wanted == "toggle-state") {
    return sd_bus_reply_method_return(call, "v", "i",
                                      row->isCheckable ? static_cast<int>(row->isChecked) : -1);
  }
  return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "Rows have no property of that name.");
}

int DBusMenu::event(sd_bus_message* call, sd_bus_error* error) {
  std::int32_t number = 0;
  const char* type = nullptr;
  if (sd_bus_message_read(call, "is", &number, &type) < 0) return -EINVAL;
  if (!findMenuRow(root_, number)) return refuseNumber(error);
  handleEvent(number, type);
  return sd_bus_reply_method_return(call, "");
}

int DBusMenu::eventGroup(sd_bus_message* call, sd_bus_error*) {
  std::vector<std::int32_t> unknown;
  if (sd_bus_message_enter_container(call, 'a', "(isvu)") < 0) return -EINVAL;
  while (sd_bus_message_enter_container(call, 'r', "isvu") > 0) {
    std::int32_t number = 0;
    const char* type = nullptr;
    if (sd_bus_message_read(call, "is", &number, &type) < 0) return -EINVAL;
    sd_bus_message_skip(call, "vu");
    sd_bus_message_exit_container(call);
    if (findMenuRow(root_, number)) {
      handleEvent(number, type);
    } else {
      unknown.push_back(number);
    }
  }
  const MessagePointer reply = replyTo(call);
  if (!reply) return -ENOMEM;
  sd_bus_message_append_array(reply.get(), 'i', unknown.data(),
                              unknown.size() * sizeof(std::int32_t));
  return sd_bus_send(nullptr, reply.get(), nullptr);
}

int DBusMenu::aboutToShow(sd_bus_message* call, sd_bus_error*) {
  std::int32_t number = 0;
  if (sd_bus_message_read(call, "i", &number) < 0) return -EINVAL;
  const bool needsUpdate = number == MenuRows::rootNumber && open();
  return sd_bus_reply_method_return(call, "b", needsUpdate);
}

int DBusMenu::aboutToShowGroup(sd_bus_message* call, sd_bus_error*) {
  if (sd_bus_message_enter_container(call, 'a', "i") < 0) return -EINVAL;
  std::int32_t number = 0;
  bool needsUpdate = false;
  while (sd_bus_message_read(call, "i", &number) > 0) {
    if (number == MenuRows::rootNumber) needsUpdate = open();
  }
  if (needsUpdate) return sd_bus_reply_method_return(call, "aiai", 1, MenuRows::rootNumber, 0);
  return sd_bus_reply_method_return(call, "aiai", 0, 0);
}

void DBusMenu::handleEvent(std::int32_t number, std::string_view type) {
  if (type == "clicked") return click(number);
  if (number != MenuRows::rootNumber) return;
  if (type == "opened") open();
  if (type == "closed") close();
}

// True when the rows have become others.
bool DBusMenu::open() {
  const auto now = std::chrono::steady_clock::now();
  if (isOpen_ && now - openedAt_ < oneOpening) return false;
  close();
  isOpen_ = true;
  openedAt_ = now;
  closing_ = runLoop_.scheduleAfter(longestOpening, [this] { close(); });
  delegate_.menuWillOpen(/*isOptionKeyHeld=*/false);
  const bool isChanged = refresh();
  if (isChanged) announceRows();
  return isChanged;
}

void DBusMenu::close() {
  closing_.reset();
  if (std::exchange(isOpen_, false)) delegate_.menuDidClose();
}

// After the answer: what the row does may take its time. A row that was disabled or has gone since
// the panel showed it does nothing.
void DBusMenu::click(std::int32_t number) {
  runLoop_.post([this, number] {
    refresh();
    const MenuRow* row = findMenuRow(root_, number);
    const bool isChosen = row && row->isEnabled && row->isVisible && !row->action.empty();
    const std::string action = isChosen ? row->action : "";
    const std::int64_t tag = isChosen ? row->tag : 0;
    close();
    if (isChosen) delegate_.perform(action, tag);
  });
}

}  // namespace kestro
