#include "platform/SampleBudget.h"

#include <algorithm>

namespace kestro {
namespace {

constexpr Seconds firstRest{2};
constexpr Seconds longestRest{30};
// An application that nobody has looked at for that long is read as any other.
constexpr Seconds longestMemory{600};

}  // namespace

void SampleBudget::begin(Seconds now) {
  isUnderWay_ = true;
  isUsedUp_ = false;
  paid_ = 0;
  now_ = now;
  asked_.reset();
  forgetOldRests();
}

bool SampleBudget::end() {
  isUnderWay_ = false;
  if (isUsedUp_ && asked_) lengthenRest(*asked_);
  std::erase_if(rests_, [&](const auto& rest) { return rest.second.isInterrupted && !isUsedUp_; });
  for (auto& [process, rest] : rests_)
    rest.isInterrupted = false;
  return isUsedUp_;
}

bool SampleBudget::admits(ProcessIdentifier process) {
  if (!isUnderWay_) return true;
  if (isUsedUp_ || isResting(process)) return false;
  asked_ = process;
  const auto rest = rests_.find(process);
  if (rest != rests_.end()) rest->second.isInterrupted = true;
  return true;
}

bool SampleBudget::pay() {
  if (!isUnderWay_) return true;
  if (paid_ >= requests_) isUsedUp_ = true;
  if (isUsedUp_) return false;
  ++paid_;
  return true;
}

void SampleBudget::useUp() {
  if (isUnderWay_) isUsedUp_ = true;
}

bool SampleBudget::isResting(ProcessIdentifier process) const {
  const auto rest = rests_.find(process);
  return isUnderWay_ && rest != rests_.end() && now_ < rest->second.end;
}

void SampleBudget::lengthenRest(ProcessIdentifier process) {
  const auto known = rests_.find(process);
  const Seconds length =
      known == rests_.end() ? firstRest : std::min(2 * known->second.length, longestRest);
  rests_[process] = {length, now_ + length};
}

void SampleBudget::forgetOldRests() {
  std::erase_if(rests_, [&](const auto& rest) { return now_ > rest.second.end + longestMemory; });
}

}  // namespace kestro
