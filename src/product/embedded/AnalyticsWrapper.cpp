#include <cmath>

#include "platform/Process.h"
#include "platform/SystemLog.h"
#include "product/KestroLegacy.h"
#include "product/embedded/AnalyticsFile.h"

namespace kestro {
namespace {

PropertyListDictionary event(std::string_view name, PropertyListDictionary attributes,
                             AnalyticsWrapper::SamplingFrequency samplingFrequency,
                             AnalyticsWrapper::Flags flags) {
  const bool isAlways = samplingFrequency == AnalyticsWrapper::SamplingFrequency::always;
  PropertyListArray flagNames;
  if (flags == AnalyticsWrapper::Flags::sensitive) flagNames.emplace_back("sensitive");
  return {{"through", "AnalyticsWrapper"},
          {"name", name},
          {"attributes", std::move(attributes)},
          {"samplingFrequency", isAlways ? "always" : "medium"},
          {"flags", std::move(flagNames)}};
}

}  // namespace

void AnalyticsWrapper::logEvent(Process& process, std::string_view name,
                                PropertyListDictionary attributes,
                                SamplingFrequency samplingFrequency, Flags flags) {
  process.shared<AnalyticsFile>().record(
      event(name, std::move(attributes), samplingFrequency, flags));
}

void AnalyticsWrapper::logEvent(Process& process, std::string_view name,
                                PropertyListDictionary attributes, bool isCritical) {
  process.shared<AnalyticsFile>().record({{"through", "AnalyticsWrapper"},
                                          {"name", name},
                                          {"attributes", std::move(attributes)},
                                          {"critical", isCritical}});
}

double AnalyticsWrapper::roundNumberToLogScale(double number) {
  if (number == 0 || !std::isfinite(number)) return number;
  const double scale = std::pow(10.0, std::floor(std::log10(std::abs(number))));
  return std::round(number / scale) * scale;
}

void Log::warning(Process& process, std::string_view text) {
  process.platform().log.write(text);
}

}  // namespace kestro
