// Applications built from an iPad code base, whose windows have no title of their own: the heading
// of their content. Runs for every application without an extractor of its own.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class CatalystInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "CatalystInfoExtractor";
  explicit CatalystInfoExtractor(Process& process) : process_(process) {}

  // Costs nothing where the window's title differs from the application's name, and two requests a
  // window where that is no such application.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
