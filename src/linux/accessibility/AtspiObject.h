// Names of objects, roles, states and relations in AT-SPI, as at-spi2-core numbers them
// (atspi-constants.h). Numbers, because the names of roles differ between toolkits.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace kestro {

struct AtspiObject {
  std::string busName;
  std::string path;

  bool isNull() const { return busName.empty() || path.empty() || path == "/org/a11y/atspi/null"; }
  bool operator==(const AtspiObject&) const = default;
  bool operator<(const AtspiObject& other) const {
    return std::tie(path, busName) < std::tie(other.path, other.busName);
  }
};

inline constexpr const char* atspiRootPath = "/org/a11y/atspi/accessible/root";

enum class AtspiRole : std::uint32_t {
  invalid = 0,
  alert = 2,
  canvas = 6,
  checkBox = 7,
  checkMenuItem = 8,
  comboBox = 11,
  dialog = 16,
  fileChooser = 19,
  filler = 20,
  frame = 23,
  icon = 26,
  image = 27,
  internalFrame = 28,
  label = 29,
  list = 31,
  listItem = 32,
  menu = 33,
  menuBar = 34,
  menuItem = 35,
  pageTab = 37,
  pageTabList = 38,
  panel = 39,
  passwordText = 40,
  popupMenu = 41,
  progressBar = 42,
  pushButton = 43,
  radioButton = 44,
  radioMenuItem = 45,
  scrollBar = 48,
  scrollPane = 49,
  separator = 50,
  slider = 51,
  spinButton = 52,
  splitPane = 53,
  statusBar = 54,
  table = 55,
  tableCell = 56,
  text = 61,
  toggleButton = 62,
  toolBar = 63,
  toolTip = 64,
  tree = 65,
  treeTable = 66,
  viewport = 68,
  window = 69,
  header = 71,
  footer = 72,
  paragraph = 73,
  application = 75,
  autocomplete = 76,
  embedded = 78,
  entry = 79,
  caption = 81,
  documentFrame = 82,
  heading = 83,
  section = 85,
  form = 87,
  link = 88,
  tableRow = 90,
  treeItem = 91,
  documentText = 94,
  documentWeb = 95,
  comment = 97,
  listBox = 98,
  grouping = 99,
  notification = 101,
  blockQuote = 105,
  article = 109,
  landmark = 110,
  log = 111,
  timer = 115,
  staticText = 116,
  descriptionList = 121,
  descriptionTerm = 122,
  descriptionValue = 123,
  pushButtonMenu = 129,
};

enum class AtspiState : unsigned {
  active = 1,
  checked = 4,
  editable = 7,
  enabled = 8,
  focusable = 11,
  focused = 12,
  modal = 16,
  multiLine = 17,
  pressed = 20,
  selected = 23,
  sensitive = 24,
  showing = 25,
};

class AtspiStates {
 public:
  AtspiStates() = default;
  explicit AtspiStates(std::uint64_t bits) : bits_(bits) {}
  bool has(AtspiState state) const { return (bits_ >> static_cast<unsigned>(state)) & 1U; }

 private:
  std::uint64_t bits_ = 0;
};

inline constexpr std::uint32_t atspiRelationEmbeds = 13;
inline constexpr std::uint32_t atspiScreenCoordinates = 0;

}  // namespace kestro
