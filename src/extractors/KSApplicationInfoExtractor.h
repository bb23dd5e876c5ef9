// The protocol of per-application extractors, and how the registry names their classes.
//
// An extractor adds what the probe's generic read of a window cannot know. It reads from the
// activity's application, mostly through accessibility, and writes into the activity's details. It
// never replaces a record, reports no errors and leaves a field alone when it finds nothing better.
// There is one object of each class per process, made at its first use: what it reads from the
// preferences in its constructor is read once. Main thread only.
#pragma once

#include <string_view>

#include "platform/Process.h"
#include "product/Activity.h"

namespace kestro {

class KSApplicationInfoExtractor {
 public:
  virtual ~KSApplicationInfoExtractor() = default;
  virtual void writeDetailsForActivity(Activity& activity) = 0;
};

struct ExtractorClass {
  std::string_view name;
  KSApplicationInfoExtractor& (*sharedExtractor)(Process& process);
};

// The class of an extractor that says its own `name`.
template <class Extractor>
inline constexpr ExtractorClass extractorClass{
    Extractor::name,
    [](Process& process) -> KSApplicationInfoExtractor& { return process.shared<Extractor>(); }};

}  // namespace kestro
