// Notes: the beginning of the selected note, from the list of notes.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

// The beginning of the note that the list shows with this text; absent when the text is empty or
// only the rest of something.
std::optional<std::string> noteTitle(const std::string& text);

class NotesInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "NotesInfoExtractor";
  explicit NotesInfoExtractor(Process& process) : process_(process) {}

  // Reads the selected rows only: a list of thousands of notes costs as much as a short one, some
  // 30 requests.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
