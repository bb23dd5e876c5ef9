// Dictionaries are searched in two ways, by their size: both must find the same.
#include "foundation/PropertyList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace kestro {
namespace {

TEST(PropertyListDictionary, keepsOrderAndFindsAllAtEverySize) {
  std::mt19937 random(7);
  PropertyListDictionary dictionary;
  std::vector<PropertyListMember> model;
  for (int step = 0; step < 5000; ++step) {
    // It grows to some 120 members and shrinks again.
    const std::string key = "k" + std::to_string(random() % 150);
    const auto known = std::ranges::find(model, key, &PropertyListMember::key);
    if (random() % 100 < (step / 1000 % 2 == 0 ? 80U : 20U)) {
      dictionary.set(key, step);
      if (known == model.end()) {
        model.push_back({key, step});
      } else {
        known->value = step;
      }
    } else {
      dictionary.remove(key);
      if (known != model.end()) model.erase(known);
    }
    const PropertyListDictionary copy = dictionary;
    ASSERT_TRUE(std::ranges::equal(copy, model)) << step;
    for (const auto& [name, value] : model) {
      const PropertyList* found = copy.find(name);
      ASSERT_TRUE(found && *found == value) << step << name;
    }
    ASSERT_EQ(copy.find("other"), nullptr);
  }
}

}  // namespace
}  // namespace kestro
