// What a sample may cost, and how long an application rests that has used it up.
#include "platform/SampleBudget.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

constexpr ProcessIdentifier greedy = 7;
constexpr ProcessIdentifier modest = 8;

// Asks until the process wants no more or nobody pays; how many requests were paid.
int ask(SampleBudget& budget, ProcessIdentifier process, int wanted) {
  int paid = 0;
  while (paid < wanted && budget.admits(process) && budget.pay())
    ++paid;
  return paid;
}

TEST(SampleBudget, letsTheGreedyRestLongerAndLonger) {
  SampleBudget budget;
  budget.setRequests(10);
  std::string whole;  // the seconds at which the greedy one was read at all
  for (int second = 0; second <= 130; ++second) {
    budget.begin(Seconds(second));
    EXPECT_EQ(ask(budget, modest, 3), 3) << second;
    const int paid = ask(budget, greedy, 100);
    EXPECT_TRUE(paid == 0 || paid == 7) << second;
    EXPECT_EQ(budget.end(), paid > 0) << second;
    if (paid > 0) whole += std::to_string(second) + " ";
  }
  EXPECT_EQ(whole, "0 2 6 14 30 60 90 120 ");
}

TEST(SampleBudget, forgetsTheRestAfterOneSampleWithinIt) {
  SampleBudget budget;
  budget.setRequests(10);
  const struct {
    int second;
    int wanted;
    int paid;
    bool isUsedUp;
  } rows[]{
      {0, 11, 10, true}, {1, 11, 0, false},  {2, 11, 10, true},
      {5, 4, 0, false},  {6, 10, 10, false},  // exactly the budget is within it
      {7, 11, 10, true},                      // and the rest begins anew
      {8, 1, 0, false},  {9, 1, 1, false},   {10, 1, 1, false},
  };
  for (const auto& row : rows) {
    budget.begin(Seconds(row.second));
    EXPECT_EQ(ask(budget, greedy, row.wanted), row.paid) << row.second;
    EXPECT_EQ(budget.end(), row.isUsedUp) << row.second;
  }
}

TEST(SampleBudget, countsTimeLikeRequestsAndNothingOutsideOfSamples) {
  SampleBudget budget;
  budget.setRequests(1);
  EXPECT_EQ(ask(budget, greedy, 50), 50);
  budget.useUp();
  EXPECT_TRUE(budget.admits(greedy));
  budget.begin(Seconds(0));
  EXPECT_TRUE(budget.admits(greedy));
  budget.useUp();
  EXPECT_FALSE(budget.pay());
  EXPECT_FALSE(budget.admits(modest));
  EXPECT_TRUE(budget.end());
  budget.begin(Seconds(1));
  EXPECT_TRUE(budget.isResting(greedy));
  EXPECT_FALSE(budget.isResting(modest));
}

}  // namespace
}  // namespace kestro
