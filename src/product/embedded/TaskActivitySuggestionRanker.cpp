#include "platform/Process.h"
#include "product/DatabaseWrapper.h"
#include "product/TimeEntries.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {
namespace {

// A project that the product's conditions propose, for a desktop without a past.
std::optional<Project> conditionalProject(const Process& process) {
  const PropertyList* given = process.platform().productConditions.find("suggestedProject");
  const auto* name = given ? given->get<std::string>() : nullptr;
  return name ? std::optional(Project{0, *name}) : std::nullopt;
}

}  // namespace

std::optional<Project> TaskActivitySuggestionRanker::suggestProjectBasedOnProvenanceMetadata(
    const TaskActivityDescriptor& descriptor) const {
  try {
    TimeEntryTable table(database_);
    std::optional<Project> project;
    if (descriptor.provenance) project = table.latestProjectOfProvenance(*descriptor.provenance);
    if (!project && descriptor.title) project = table.latestProjectOfTitle(*descriptor.title);
    return project ? project : conditionalProject(process_);
  } catch (const SQLite::Exception& failure) {
    auto* wrapper = DatabaseWrapper::openSharedInstance(process_);
    if (wrapper) wrapper->noteReadFailure(failure);
    return std::nullopt;
  }
}

}  // namespace kestro
