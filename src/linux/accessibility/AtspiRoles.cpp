#include "linux/accessibility/AtspiRoles.h"

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
    {AtspiRole::blockQuote, "AXGroup", ""},
    {AtspiRole::canvas, "AXImage", ""},
    {AtspiRole::caption, "AXGroup", ""},
    {AtspiRole::checkBox, "AXCheckBox", ""},
    {AtspiRole::checkMenuItem, "AXMenuItem", ""},
    {AtspiRole::comment, "AXGroup", ""},
    {AtspiRole::descriptionList, "AXList", "AXDescriptionList"},
    {AtspiRole::descriptionTerm, "AXGroup", "AXTerm"},
    {AtspiRole::descriptionValue, "AXGroup", "AXDescription"},
    {AtspiRole::documentFrame, "AXWebArea", ""},
    {AtspiRole::documentText, "AXTextArea", ""},
    {AtspiRole::documentWeb, "AXWebArea", ""},
    {AtspiRole::embedded, "AXGroup", ""},
    {AtspiRole::filler, "AXGroup", ""},
    {AtspiRole::footer, "AXGroup", "AXSectionFooter"},
    {AtspiRole::form, "AXGroup", ""},
    {AtspiRole::frame, "AXWindow", "AXStandardWindow"},
    {AtspiRole::grouping, "AXGroup", ""},
    {AtspiRole::header, "AXGroup", "AXSectionHeader"},
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
    {AtspiRole::log, "AXGroup", ""},
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
    {AtspiRole::pushButtonMenu, "AXPopUpButton", ""},
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
    {AtspiRole::timer, "AXGroup", ""},
    {AtspiRole::toggleButton, "AXButton", "AXToggle"},
    {AtspiRole::toolBar, "AXToolbar", ""},
    {AtspiRole::toolTip, "AXHelpTag", ""},
    {AtspiRole::tree, "AXOutline", ""},
    {AtspiRole::treeItem, "AXRow", "AXOutlineRow"},
    {AtspiRole::treeTable, "AXOutline", ""},
    {AtspiRole::viewport, "AXGroup", ""},
    {AtspiRole::window, "AXWindow", "AXStandardWindow"},
};

// Of toggle buttons in pages.
constexpr std::string_view toggleButtonSubrole = "AXToggleButton";

struct LandmarkRow {
  std::string_view xmlRole;
  std::string_view axSubrole;
};

// As W3C's Core Accessibility API Mappings give them.
constexpr LandmarkRow landmarkRows[]{
    {"banner", "AXLandmarkBanner"},
    {"complementary", "AXLandmarkComplementary"},
    {"contentinfo", "AXLandmarkContentInfo"},
    {"form", "AXLandmarkForm"},
    {"main", "AXLandmarkMain"},
    {"navigation", "AXLandmarkNavigation"},
    {"region", "AXLandmarkRegion"},
    {"search", "AXLandmarkSearch"},
    {"application", "AXWebApplication"},
    {"group", "AXApplicationGroup"},
    {"document", "AXDocument"},
    {"note", "AXDocumentNote"},
    {"article", "AXDocumentArticle"},
    {"timer", "AXApplicationTimer"},
    {"tabpanel", "AXTabPanel"},
    {"alert", "AXApplicationAlert"},
    {"alertdialog", "AXApplicationAlertDialog"},
    {"dialog", "AXApplicationDialog"},
    {"log", "AXApplicationLog"},
    {"status", "AXApplicationStatus"},
    {"switch", "AXSwitch"},
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

// Elements of web pages whose counterpart their role does not tell.
enum class MarkupKind { none, tabPanel, innerDocument, menuButton, toggle };

MarkupKind markupKind(AtspiRole role, const AtspiTraits& traits) {
  if (traits.tag.empty()) return MarkupKind::none;
  switch (role) {
    case AtspiRole::scrollPane:
      return traits.xmlRoles == "tabpanel" ? MarkupKind::tabPanel : MarkupKind::none;
    case AtspiRole::documentFrame:
      return traits.xmlRoles == "document" ? MarkupKind::innerDocument : MarkupKind::none;
    case AtspiRole::pushButton: {
      const bool opensMenu = !traits.hasPopup.empty() && traits.hasPopup != "false";
      return opensMenu ? MarkupKind::menuButton : MarkupKind::none;
    }
    case AtspiRole::toggleButton:
      return traits.tag == "summary" ? MarkupKind::none : MarkupKind::toggle;
    default:
      return MarkupKind::none;
  }
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
  switch (markupKind(role, traits)) {
    case MarkupKind::tabPanel:
    case MarkupKind::innerDocument:
      return "AXGroup";
    case MarkupKind::menuButton:
      return "AXPopUpButton";
    case MarkupKind::toggle:
      return "AXCheckBox";
    case MarkupKind::none:
      break;
  }
  const RoleRow* row = rowOf(role);
  return row ? row->axRole : "AXUnknown";
}

bool roleDependsOnAttributes(AtspiRole role) {
  return role == AtspiRole::scrollPane || role == AtspiRole::documentFrame ||
         role == AtspiRole::pushButton || role == AtspiRole::toggleButton;
}

bool subroleDependsOnAttributes(AtspiRole role) {
  const RoleRow* row = rowOf(role);
  return isDialog(role) || roleDependsOnAttributes(role) || (row && row->axRole == "AXGroup");
}

std::optional<std::string> axSubrole(AtspiRole role, const AtspiTraits& traits) {
  if (isDialog(role) && traits.isTopLevel) return "AXDialog";
  if (auto subrole = subroleOfXmlRoles(traits.xmlRoles)) return subrole;
  if (markupKind(role, traits) == MarkupKind::toggle) return std::string(toggleButtonSubrole);
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
      {AtspiRole::scrollPane, {"AXScrollArea", "AXGroup"}},
      {AtspiRole::documentFrame, {"AXWebArea", "AXGroup"}},
      {AtspiRole::pushButton, {"AXButton", "AXPopUpButton"}},
      {AtspiRole::toggleButton, {"AXButton", "AXCheckBox"}},
  };
  AtspiRoleChoice choice;
  for (const RoleRow& row : roleRows) {
    if (row.axRole == axRole && !roleDependsOnAttributes(row.role))
      choice.roles.push_back(row.role);
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
  if (axSubrole == toggleButtonSubrole) roles.push_back(AtspiRole::toggleButton);
  return roles;
}

}  // namespace kestro
