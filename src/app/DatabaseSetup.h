// What the helper adds to the product's database when it starts. Main thread only.
#pragma once

namespace kestro {

class DatabaseWrapper;
class Process;

// Fills the database with sample data when the product wants some: its own, then integrations. A
// failure is dropped.
void generateAllSampleDataIfNeeded(Process& process, DatabaseWrapper& database);

// Has the activity writer update the integrations after each sync. Nothing without a writer.
void setupPostSyncUpdater(Process& process, DatabaseWrapper& database);

}  // namespace kestro
