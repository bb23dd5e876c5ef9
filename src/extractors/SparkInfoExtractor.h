// Spark: whom a message is written to, or whom the open message is from or went to.
#pragma once

#include "extractors/AccessibilityElement.h"
#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class SparkInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "SparkInfoExtractor";
  explicit SparkInfoExtractor(Process& process);

  // Looks at the first window only: some 15 requests, two more for each recipient and one for each
  // folder above the current one.
  void writeDetailsForActivity(Activity& activity) override;

  // Whether messages in the folder were written by the user, by the folder's name.
  bool isOutgoingFolder(std::string_view folderName) const;

 private:
  std::vector<std::string> linesOfComposer(const AccessibilityElement& webArea) const;
  std::vector<std::string> linesOfOpenMessage(const AccessibilityElement& webArea) const;

  Process& process_;
  // In lower case; empty: none.
  std::string extraOutgoingFolderName_;
};

// A text area's text when it is a subject: a single line. Absent for an empty text and for one of
// several lines, which is the letter itself.
std::optional<std::string> sparkSubject(std::string_view text);

}  // namespace kestro
