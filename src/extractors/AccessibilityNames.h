// Names of attributes, roles and subroles, as the designed platform and the web engines on it use
// them.
#pragma once

#include <string_view>

namespace kestro::attribute {

inline constexpr std::string_view children = "AXChildren";
inline constexpr std::string_view childrenInNavigationOrder = "AXChildrenInNavigationOrder";
inline constexpr std::string_view contents = "AXContents";
inline constexpr std::string_view description = "AXDescription";
inline constexpr std::string_view disclosedByRow = "AXDisclosedByRow";
inline constexpr std::string_view document = "AXDocument";
inline constexpr std::string_view domClassList = "AXDOMClassList";
inline constexpr std::string_view domIdentifier = "AXDOMIdentifier";
inline constexpr std::string_view enhancedUserInterface = "AXEnhancedUserInterface";
inline constexpr std::string_view focusedWindow = "AXFocusedWindow";
inline constexpr std::string_view fullScreen = "AXFullScreen";
inline constexpr std::string_view help = "AXHelp";
inline constexpr std::string_view identifier = "AXIdentifier";
inline constexpr std::string_view mainWindow = "AXMainWindow";
inline constexpr std::string_view manualAccessibility = "AXManualAccessibility";
inline constexpr std::string_view modal = "AXModal";
inline constexpr std::string_view parent = "AXParent";
inline constexpr std::string_view path = "AXPath";
inline constexpr std::string_view role = "AXRole";
inline constexpr std::string_view selected = "AXSelected";
inline constexpr std::string_view selectedRows = "AXSelectedRows";
inline constexpr std::string_view subrole = "AXSubrole";
inline constexpr std::string_view title = "AXTitle";
inline constexpr std::string_view url = "AXURL";
inline constexpr std::string_view value = "AXValue";
inline constexpr std::string_view window = "AXWindow";
inline constexpr std::string_view windows = "AXWindows";

}  // namespace kestro::attribute

namespace kestro::role {

inline constexpr std::string_view button = "AXButton";
inline constexpr std::string_view cell = "AXCell";
inline constexpr std::string_view checkBox = "AXCheckBox";
inline constexpr std::string_view group = "AXGroup";
inline constexpr std::string_view heading = "AXHeading";
inline constexpr std::string_view link = "AXLink";
inline constexpr std::string_view list = "AXList";
inline constexpr std::string_view outline = "AXOutline";
inline constexpr std::string_view popUpButton = "AXPopUpButton";
inline constexpr std::string_view row = "AXRow";
inline constexpr std::string_view scrollArea = "AXScrollArea";
inline constexpr std::string_view sheet = "AXSheet";
inline constexpr std::string_view splitGroup = "AXSplitGroup";
inline constexpr std::string_view splitter = "AXSplitter";
inline constexpr std::string_view staticText = "AXStaticText";
inline constexpr std::string_view table = "AXTable";
inline constexpr std::string_view textArea = "AXTextArea";
inline constexpr std::string_view textField = "AXTextField";
inline constexpr std::string_view toolbar = "AXToolbar";
inline constexpr std::string_view webArea = "AXWebArea";
inline constexpr std::string_view window = "AXWindow";

}  // namespace kestro::role

namespace kestro::subrole {

inline constexpr std::string_view applicationGroup = "AXApplicationGroup";
inline constexpr std::string_view applicationTimer = "AXApplicationTimer";
inline constexpr std::string_view dialog = "AXDialog";
inline constexpr std::string_view documentArticle = "AXDocumentArticle";
inline constexpr std::string_view landmarkBanner = "AXLandmarkBanner";
inline constexpr std::string_view landmarkMain = "AXLandmarkMain";
inline constexpr std::string_view landmarkNavigation = "AXLandmarkNavigation";
inline constexpr std::string_view landmarkRegion = "AXLandmarkRegion";
inline constexpr std::string_view sectionHeader = "AXSectionHeader";
inline constexpr std::string_view tabPanel = "AXTabPanel";
inline constexpr std::string_view textAttachment = "AXTextAttachment";
inline constexpr std::string_view toggleButton = "AXToggleButton";

}  // namespace kestro::subrole
