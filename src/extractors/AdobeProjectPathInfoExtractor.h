// Premiere Pro and After Effects: the project file, whose path stands inside a decorated title.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"
#include "foundation/RegularExpression.h"

namespace kestro {

class AdobeProjectPathInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "AdobeProjectPathInfoExtractor";
  explicit AdobeProjectPathInfoExtractor(Process& process);

  // No requests but those of switching accessibility on.
  void writeDetailsForActivity(Activity& activity) override;

  // The absolute path of the project in a title.
  std::optional<std::string> projectPath(std::string_view title) const;
  // What the title says beyond application, version, path and unsaved markers; may be empty.
  std::string titleWithout(const std::string& path, std::string_view title) const;

 private:
  Process& process_;
  RegularExpression path_;
  RegularExpression afterEffectsPrefix_;
  RegularExpression premiereProPrefix_;
};

}  // namespace kestro
