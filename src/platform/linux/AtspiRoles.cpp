#include "platform/linux/AtspiRoles.h"

#include <algorithm>
#include <iterator>

namespace kestro {
namespace {

struct RoleRow {
  AtspiRole role;
  std::string_view axRole;
  std::string_view axSubrole;
};

// Roles whose counterpart depends on nothing else.
constexpr RoleRow roleRows[]{
    {AtspiRole::application, "AXApplication", ""},
    {AtspiRole::article, "AXGroup", "AXDocumentArticle"},
    {AtspiRole::autocomplete, "AXTextField", ""},
    {AtspiRole::canvas, "AXImage", ""},
    {AtspiRole::checkBox, "AXCheckBox", ""},
    {AtspiRole::checkMenuItem, "AXMenuItem", ""},
    {AtspiRole::documentFrame, "AXWebArea", ""},
    {AtspiRole::documentText, "AXTextArea", ""},
    {AtspiRole::documentWeb, "AXWebArea", ""},
    {AtspiRole::filler, "AXGroup", ""},
    {AtspiRole::frame, "AXWindow", "AXStandardWindow"},
    {AtspiRole::grouping, "AXGroup", ""},
    {AtspiRole::heading, "AXHeading", ""},
    {AtspiRole::icon, "AXImage", ""},
    {AtspiRole::image, "AXImage", ""},
    {AtspiRole::internalFrame, "AXGroup", ""},
    {AtspiRole::label, "AXStaticText", ""},
    {AtspiRole::landmark, "AXGroup", ""},
    {AtspiRole::link, "AXLink", ""},
    {AtspiRole::list, "AXList", ""},
    {AtspiRole::listBox, "AXList", ""},
    {AtspiRole::listItem, "AXGroup", ""},
    {AtspiRole::menu, "AXMenu", ""},
    {AtspiRole::menuBar, "AXMenuBar", ""},
    {AtspiRole::menuItem, "AXMenuItem", ""},
    {AtspiRole::notification, "AXGroup", ""},
    {AtspiRole::pageTab, "AXRadioButton", "AXTabButton"},
    {AtspiRole::pageTabList, "AXTabGroup", ""},
    {AtspiRole::panel, "AXGroup", ""},
    {AtspiRole::paragraph, "AXGroup", ""},
    {AtspiRole::passwordText, "AXTextField", "AXSecureTextField"},
    {AtspiRole::popupMenu, "AXMenu", ""},
    {AtspiRole::progressBar, "AXProgressIndicator", ""},
    {AtspiRole::pushButton, "AXButton", ""},
    {AtspiRole::radioButton, "AXRadioButton", ""},
    {AtspiRole::radioMenuItem, "AXMenuItem", ""},
    {AtspiRole::scrollBar, "AXScrollBar", ""},
    {AtspiRole::scrollPane, "AXScrollArea", ""},
    {AtspiRole::section, "AXGroup", ""},
    {AtspiRole::separator, "AXSplitter", ""},
    {AtspiRole::slider, "AXSlider", ""},
    {AtspiRole::spinButton, "AXIncrementor", ""},
    {AtspiRole::splitPane, "AXSplitGroup", ""},
    {AtspiRole::staticText, "AXStaticText", ""},
    {AtspiRole::statusBar, "AXGroup", ""},
    {AtspiRole::table, "AXTable", ""},
    {AtspiRole::tableCell, "AXCell", ""},
    {AtspiRole::tableRow, "AXRow", "AXTableRow"},
    {AtspiRole::toggleButton, "AXButton", "AXToggle"},
    {AtspiRole::toolBar, "AXToolbar", ""},
    {AtspiRole::toolTip, "AXHelpTag", ""},
    {AtspiRole::tree, "AXOutline", ""},
    {AtspiRole::treeItem, "AXRow", "AXOutlineRow"},
    {AtspiRole::treeTable, "AXOutline", ""},
    {AtspiRole::viewport, "AXGroup", ""},
    {AtspiRole::window, "AXWindow", "AXStandardWindow"},
};

struct LandmarkRow {
  std::string_view xmlRole;
  std::string_view axSubrole;
};

constexpr LandmarkRow landmarkRows[]{
    {"banner", "AXLandmarkBanner"},
    {"complementary", "AXLandmarkComplementary"},
    {"contentinfo", "AXLandmarkContentInfo"},
    {"form", "AXLandmarkForm"},
    {"main", "AXLandmarkMain"},
    {"navigation", "AXLandmarkNavigation"},
    {"region", "AXLandmarkRegion"},
    {"search", "AXLandmarkSearch"},
    {"application", "AXApplicationGroup"},
    {"article", "AXDocumentArticle"},
    {"timer", "AXApplicationTimer"},
    {"tabpanel", "AXTabPanel"},
    {"alert", "AXApplicationAlert"},
    {"alertdialog", "AXApplicationAlertDialog"},
    {"dialog", "AXApplicationDialog"},
    {"log", "AXApplicationLog"},
    {"status", "AXApplicationStatus"},
};

const RoleRow* rowOf(AtspiRole role) {
  const auto* row = std::ranges::find(roleRows, role, &RoleRow::role);
  return row == std::end(roleRows) ? nullptr : row;
}

bool isDialog(AtspiRole role) {
  return role == AtspiRole::dialog || role == AtspiRole::alert || role == AtspiRole::fileChooser;
}

bool isTextEntry(AtspiRole role) {
  return role == AtspiRole::entry || role == AtspiRole::text;
}

// `xml-roles` may name several roles; the first that is known counts.
std::optional<std::string> subroleOfXmlRoles(std::string_view xmlRoles) {
  while (!xmlRoles.empty()) {
    const std::size_t end = std::min(xmlRoles.find(' '), xmlRoles.size());
    const auto* row =
        std::ranges::find(landmarkRows, xmlRoles.substr(0, end), &LandmarkRow::xmlRole);
    if (row != std::end(landmarkRows)) return std::string(row->axSubrole);
    xmlRoles.remove_prefix(std::min(end + 1, xmlRoles.size()));
  }
  return std::nullopt;
}

}  // namespace

bool roleDependsOnStates(AtspiRole role) {
  return isTextEntry(role) || role == AtspiRole::comboBox;
}

std::string_view axRole(AtspiRole role, const AtspiTraits& traits) {
  if (isDialog(role)) return traits.isTopLevel ? "AXWindow" : "AXGroup";
  if (isTextEntry(role)) {
    return traits.states.has(AtspiState::multiLine) ? "AXTextArea" : "AXTextField";
  }
  if (role == AtspiRole::comboBox) {
    return traits.states.has(AtspiState::editable) ? "AXComboBox" : "AXPopUpButton";
  }
  const RoleRow* row = rowOf(role);
  return row ? row->axRole : "AXUnknown";
}

bool subroleDependsOnAttributes(AtspiRole role) {
  const RoleRow* row = rowOf(role);
  return isDialog(role) || (row && row->axRole == "AXGroup");
}

std::optional<std::string> axSubrole(AtspiRole role, const AtspiTraits& traits) {
  if (isDialog(role) && traits.isTopLevel) return "AXDialog";
  if (auto subrole = subroleOfXmlRoles(traits.xmlRoles)) return subrole;
  const RoleRow* row = rowOf(role);
  if (!row || row->axSubrole.empty()) return std::nullopt;
  return std::string(row->axSubrole);
}

bool isDocument(AtspiRole role) {
  return role == AtspiRole::documentWeb || role == AtspiRole::documentFrame;
}

AtspiRoleChoice atspiRoles(std::string_view axRole) {
  struct Uncertain {
    AtspiRole role;
    std::string_view axRoles[2];
  };
  constexpr Uncertain uncertainRows[]{
      {AtspiRole::dialog, {"AXWindow", "AXGroup"}},
      {AtspiRole::alert, {"AXWindow", "AXGroup"}},
      {AtspiRole::fileChooser, {"AXWindow", "AXGroup"}},
      {AtspiRole::entry, {"AXTextArea", "AXTextField"}},
      {AtspiRole::text, {"AXTextArea", "AXTextField"}},
      {AtspiRole::comboBox, {"AXComboBox", "AXPopUpButton"}},
  };
  AtspiRoleChoice choice;
  for (const RoleRow& row : roleRows) {
    if (row.axRole == axRole) choice.roles.push_back(row.role);
  }
  for (const Uncertain& row : uncertainRows) {
    if (std::ranges::find(row.axRoles, axRole) == std::end(row.axRoles)) continue;
    choice.roles.push_back(row.role);
    choice.isCertain = false;
  }
  return choice;
}

std::string_view xmlRole(std::string_view axSubrole) {
  const auto* row = std::ranges::find(landmarkRows, axSubrole, &LandmarkRow::axSubrole);
  return row == std::end(landmarkRows) ? std::string_view() : row->xmlRole;
}

std::vector<AtspiRole> atspiRolesOfSubrole(std::string_view axSubrole) {
  std::vector<AtspiRole> roles;
  for (const RoleRow& row : roleRows) {
    if (row.axSubrole == axSubrole) roles.push_back(row.role);
  }
  return roles;
}

}  // namespace kestro
