#include "app/DatabaseSetup.h"

#include <exception>

#include "app/IntegrationsPostSyncUpdater.h"
#include "product/ActivityWriter.h"
#include "product/DatabaseWrapper.h"
#include "product/SampleData.h"

namespace kestro {

void generateAllSampleDataIfNeeded(Process& process, DatabaseWrapper& database) {
  SampleDataSources sources = SampleDataGenerator::defaultSampleDataSources();
  sources.push_back(std::make_unique<IntegrationsSampleDataSource>(
      sampleDataGeneratorConfig(process).integrations));
  try {
    database.generateSampleDataIfNeeded(sources);
  } catch (const std::exception&) {
    // The user works with their own data then.
  }
}

void setupPostSyncUpdater(Process& process, DatabaseWrapper& database) {
  ActivityWriter* writer = database.activityWriter();
  if (!writer) return;
  const KestroIntegrationsDatabaseAdapter adapter(process, database);
  writer->setPostSyncUpdater(
      std::make_unique<IntegrationsPostSyncUpdater>(IntegrationsUpdater(adapter)));
}

}  // namespace kestro
