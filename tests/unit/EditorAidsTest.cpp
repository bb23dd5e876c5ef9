// What the time entry editor may not save, and what it offers.
#include "product/embedded/EditorAids.h"

#include <gtest/gtest.h>

#include "DatabaseFixture.h"
#include "platform/Process.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {
namespace {

class EditorAidsTest : public DatabaseFixture {
 protected:
  std::int64_t add(double start, double end, const char* title, const char* project) {
    TaskActivity entry{};
    DatabaseWrapper::sharedInstance(*process)->mutateOrPresentError([&](SQLite::Database& mutator) {
      entry = TimeEntryTable(mutator).insert(
          {at(start), at(end), title ? std::optional<std::string>(title) : std::nullopt, project});
    });
    return entry.identifier;
  }
  bool mayBeSaved(const TimeEntryEditorAids& aids, double start, double end) {
    return !aids.check({"", "", at(start), at(end), std::nullopt});
  }
};

TEST_F(EditorAidsTest, refuseTimeThatIsCovered) {
  const std::int64_t first = add(100, 200, "Harbour", "Pier");
  add(300, 400, nullptr, "Pier");
  const auto aids = editorAids(*process, EditedThing::timeEntry);
  struct Case {
    double start;
    double end;
    bool isAllowed;
  };
  for (const Case& each :
       {Case{0, 100, true}, Case{200, 300, true}, Case{0, 101, false}, Case{199, 210, false},
        Case{120, 130, false}, Case{0, 500, false}, Case{250, 240, false}, Case{400, 500, true}}) {
    EXPECT_EQ(mayBeSaved(aids, each.start, each.end), each.isAllowed) << each.start;
  }
  EXPECT_EQ(aids.check({"", "", at(150), at(160), std::nullopt}),
            "The time entry “Harbour” already covers part of this time.");
  EXPECT_EQ(aids.check({"", "", at(350), at(360), std::nullopt}),
            "Another time entry already covers part of this time.");
  EXPECT_TRUE(mayBeSaved(editorAids(*process, EditedThing::timeEntry, first), 110, 210));
}

TEST_F(EditorAidsTest, offerWhatIsKnown) {
  add(100, 200, "Old", "pier");
  add(300, 400, "New", "Alpha");
  add(500, 600, "Old", "pier");
  const auto aids = editorAids(*process, EditedThing::runningTimer);
  EXPECT_FALSE(aids.hasEnd);
  EXPECT_EQ(aids.titles, (std::vector<std::string>{"Old", "New"}));
  EXPECT_EQ(aids.projects, (std::vector<std::string>{"Alpha", "pier"}));
  // It runs from its start until now, whatever the editor says of an end.
  fake.runLoop.setNow(at(1000));
  EXPECT_FALSE(mayBeSaved(aids, 550, 0));
  EXPECT_TRUE(mayBeSaved(aids, 700, 0));
}

}  // namespace
}  // namespace kestro
