// Invented contents for a database that people want to see something in: part of the product's
// user-interface library. Main thread only.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "foundation/Date.h"
#include "foundation/PropertyList.h"

namespace SQLite {
class Database;
}

namespace kestro {

class Process;

class SampleDataSource {
 public:
  virtual ~SampleDataSource() = default;
  virtual std::string_view name() const = 0;
  // Within a mutation. Throws SQLite::Exception.
  virtual void generate(SQLite::Database& database, Date now) const = 0;
};

using SampleDataSources = std::vector<std::unique_ptr<SampleDataSource>>;

// What the product wants generated: the main application's preference `sampleDataGenerator`, a
// dictionary. Without it nothing is wanted.
struct SampleDataGeneratorConfig {
  bool isWanted = false;
  PropertyListDictionary integrations;
};
SampleDataGeneratorConfig sampleDataGeneratorConfig(Process& process);

class SampleDataGenerator {
 public:
  // Projects, then time entries of the last days.
  static SampleDataSources defaultSampleDataSources();
};

}  // namespace kestro
