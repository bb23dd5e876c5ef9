#include "platform/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace kestro {

NotificationCenter::Observation::Observation(NotificationCenter& center,
                                             std::shared_ptr<const Observer> observer)
    : center_(&center), observer_(std::move(observer)) {}

NotificationCenter::Observation::Observation(Observation&& other) noexcept
    : center_(std::exchange(other.center_, nullptr)), observer_(std::move(other.observer_)) {}

NotificationCenter::Observation& NotificationCenter::Observation::operator=(
    Observation&& other) noexcept {
  if (this == &other) return *this;
  end();
  center_ = std::exchange(other.center_, nullptr);
  observer_ = std::move(other.observer_);
  return *this;
}

NotificationCenter::Observation::~Observation() {
  end();
}

void NotificationCenter::Observation::end() {
  if (center_) center_->remove(observer_);
  center_ = nullptr;
}

NotificationCenter::Observation NotificationCenter::observe(std::string_view name,
                                                            Observer observer) {
  auto kept = std::make_shared<const Observer>(std::move(observer));
  entries_.push_back({std::string(name), kept});
  return Observation(*this, std::move(kept));
}

void NotificationCenter::remove(const std::shared_ptr<const Observer>& observer) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.observer == observer; });
}

void NotificationCenter::post(std::string_view name, const PropertyListDictionary& userInfo) {
  // An observer may end others: only those that are still there are called.
  const std::vector<Entry> entries = entries_;
  for (const Entry& entry : entries) {
    if (entry.name != name) continue;
    const bool isThere =
        std::ranges::find(entries_, entry.observer, &Entry::observer) != entries_.end();
    if (isThere) (*entry.observer)(userInfo);
  }
}

}  // namespace kestro
