#include "extractors/SparkInfoExtractor.h"

#include <algorithm>
#include <array>

#include "extractors/EnhancedAccessibility.h"
#include "extractors/SparkPage.h"
#include "extractors/TitleParts.h"
#include "foundation/ComparableText.h"
#include "platform/LocalizedStrings.h"
#include "platform/UserDefaults.h"

namespace kestro {
namespace {

std::optional<AccessibilityElement> webAreaOf(const AccessibilityElement& window) {
  return window.firstDescendantWithRole(role::webArea, maxRecursionLevel(window.process()));
}

}  // namespace

SparkInfoExtractor::SparkInfoExtractor(Process& process)
    : process_(process),
      extraOutgoingFolderName_(
          caselessText(process.platform()
                           .defaults.standard()
                           .string("SparkInfoExtractor_extraOutgoingFolderName")
                           .value_or(""))) {}

bool SparkInfoExtractor::isOutgoingFolder(std::string_view folderName) const {
  constexpr std::array<std::string_view, 19> outgoing{
      "sent",         "gesendet",  "envoyés", "enviados",  "inviate",    "送信",       "已发送",
      "отправленные", "надіслані", "drafts",  "entwürfe",  "brouillons", "borradores", "rascunhos",
      "bozze",        "下書き",    "草稿",    "черновики", "чернетки"};
  const std::string folder = caselessText(folderName);
  if (folder.empty()) return false;
  return folder == extraOutgoingFolderName_ ||
         std::ranges::find(outgoing, folder) != outgoing.end();
}

std::optional<std::string> sparkSubject(std::string_view text) {
  constexpr std::string_view whiteSpace = " \t\r\n";
  const auto first = text.find_first_not_of(whiteSpace);
  if (first == std::string_view::npos) return std::nullopt;
  const auto line = text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
  if (line.find('\n') != std::string_view::npos) return std::nullopt;
  return std::string(line);
}

std::vector<std::string> SparkInfoExtractor::linesOfComposer(
    const AccessibilityElement& webArea) const {
  const auto composer = sparkComposer(webArea);
  if (!composer) return {};
  std::vector<std::string> lines;
  if (!composer->recipients.empty()) {
    lines.push_back(localizedFormat(process_, "To: %@", joined(composer->recipients, ", ")));
  }
  auto subject = composer->text ? sparkSubject(*composer->text) : std::nullopt;
  if (subject) lines.push_back(std::move(*subject));
  return lines;
}

std::vector<std::string> SparkInfoExtractor::linesOfOpenMessage(
    const AccessibilityElement& webArea) const {
  const auto folder = sparkCurrentFolder(webArea);
  if (!folder) return {};
  const auto correspondents = sparkCorrespondents(webArea);
  if (correspondents.empty()) return {};
  if (isOutgoingFolder(*folder)) {
    return {localizedFormat(process_, "To: %@", joined(correspondents, ", "))};
  }
  return {localizedFormat(process_, "From: %@", correspondents.front())};
}

void SparkInfoExtractor::writeDetailsForActivity(Activity& activity) {
  enableEnhancedAccessibility(process_, activity);
  const auto windows = accessibilityWindows(process_, activity);
  const auto webArea = windows.empty() ? std::nullopt : webAreaOf(windows.front());
  if (!webArea) return;
  auto lines = linesOfComposer(*webArea);
  if (lines.empty()) lines = linesOfOpenMessage(*webArea);
  if (!lines.empty()) activity.details.contextPath = std::move(lines);
}

}  // namespace kestro
