#include "product/SampleData.h"

#include <array>

#include "platform/Process.h"
#include "platform/UserDefaults.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {
namespace {

struct SampleProject {
  const char* name;
  const char* entryTitle;
  int startHour;  // on each day
  int hours;
};
constexpr std::array<SampleProject, 3> sampleProjects{{{"Website", "Landing page", 9, 3},
                                                       {"Client Work", "Design review", 13, 1},
                                                       {"Administration", "Invoices", 15, 2}}};
constexpr int sampleDays = 3;

class ProjectsSampleDataSource final : public SampleDataSource {
 public:
  std::string_view name() const override { return "projects"; }
  void generate(SQLite::Database& database, Date) const override {
    for (const SampleProject& project : sampleProjects) {
      SQLite::Statement add(database, "INSERT OR IGNORE INTO projects (name) VALUES (?)");
      add.bind(1, project.name);
      add.exec();
    }
  }
};

// The days before today, in UTC: nobody takes them for their own.
class TimeEntriesSampleDataSource final : public SampleDataSource {
 public:
  std::string_view name() const override { return "timeEntries"; }
  void generate(SQLite::Database& database, Date now) const override {
    TimeEntryTable table(database);
    for (int day = sampleDays; day > 0; --day) {
      const Date midnight = std::chrono::floor<std::chrono::days>(now) - std::chrono::days(day);
      for (const SampleProject& project : sampleProjects) {
        const Date start = midnight + std::chrono::hours(project.startHour);
        table.insert(
            {start, start + std::chrono::hours(project.hours), project.entryTitle, project.name});
      }
    }
  }
};

}  // namespace

SampleDataGeneratorConfig sampleDataGeneratorConfig(Process& process) {
  const auto stored = process.platform()
                          .defaults.product(ProductStore::mainAppPreferences)
                          .value("sampleDataGenerator");
  const auto* config = stored ? stored->get<PropertyListDictionary>() : nullptr;
  if (!config) return {};
  const PropertyList* integrations = config->find("integrations");
  const auto* part = integrations ? integrations->get<PropertyListDictionary>() : nullptr;
  return {true, part ? *part : PropertyListDictionary()};
}

SampleDataSources SampleDataGenerator::defaultSampleDataSources() {
  SampleDataSources sources;
  sources.push_back(std::make_unique<ProjectsSampleDataSource>());
  sources.push_back(std::make_unique<TimeEntriesSampleDataSource>());
  return sources;
}

}  // namespace kestro
