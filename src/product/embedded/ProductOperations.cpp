#include "product/embedded/ProductOperations.h"

#include "platform/Process.h"
#include "platform/Transcript.h"

namespace kestro {
namespace {

constexpr Seconds usualSamplingInterval{1.0};
constexpr Seconds shortestSamplingInterval{0.01};

}  // namespace

std::optional<double> number(const PropertyList& value) {
  if (const auto* real = value.get<double>()) return *real;
  if (const auto* whole = value.get<std::int64_t>()) return static_cast<double>(*whole);
  return std::nullopt;
}

void recordOperation(Process& process, std::string_view operation, PropertyListArray arguments) {
  Transcript& transcript = process.platform().transcript;
  if (!transcript.isActive()) return;
  transcript.record("product", {{"operation", operation}, {"arguments", std::move(arguments)}});
}

bool isPartPresent(Process& process, std::string_view condition) {
  const PropertyList* value = process.platform().productConditions.find(condition);
  const bool* flag = value ? value->get<bool>() : nullptr;
  return !flag || *flag;
}

Seconds samplingInterval(Process& process) {
  const PropertyList* value = process.platform().productConditions.find("samplingInterval");
  const auto seconds = value ? number(*value) : std::nullopt;
  // Written so that a value that is not a number is refused too.
  if (!seconds || !(*seconds >= shortestSamplingInterval.count())) return usualSamplingInterval;
  return Seconds(*seconds);
}

}  // namespace kestro
