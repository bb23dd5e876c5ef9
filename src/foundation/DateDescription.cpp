#include "foundation/DateDescription.h"

#include <array>
#include <ctime>

namespace kestro {

std::string dateDescription(Date date) {
  const std::time_t seconds =
      std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
  std::tm fields{};
  gmtime_r(&seconds, &fields);
  std::array<char, 40> text{};
  const std::size_t length =
      std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S +0000", &fields);
  return std::string(text.data(), length);
}

}  // namespace kestro
