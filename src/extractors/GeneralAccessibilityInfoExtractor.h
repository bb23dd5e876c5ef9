// What every accessible application yields beyond its window's title and document: the document
// behind a dialog, whether a save panel is shown, and the page of a browser's application window.
// Run by the probe itself on every sample.
#pragma once

#include <string>
#include <vector>

#include "extractors/AccessibilityElement.h"
#include "platform/Process.h"
#include "product/Activity.h"

namespace kestro {

class GeneralAccessibilityInfoExtractor {
 public:
  explicit GeneralAccessibilityInfoExtractor(Process& process);

  // Costs, for one window without sheets: with a document known, the window's children and a role
  // for each; without one, three requests more and two for each of the application's windows.
  void extractAdditionalInformationFor(Activity& activity);

 private:
  void fallBackForDialogs(Activity& activity) const;
  void detectSavePanel(Activity& activity) const;
  void readBrowserApplicationWindows(Activity& activity) const;

  Process& process_;
  bool preferTitleOfOnlyNonModalWindow_;
  bool fallBackToDocumentPathOfOnlyNonModalWindow_;
  bool fallBackToOnlyDocumentPathAmongAllWindows_;
  // Beginnings of the bundle identifiers of windows that a Chromium browser runs as applications.
  std::vector<std::string> chromeAppShimPrefixes_;
};

}  // namespace kestro
