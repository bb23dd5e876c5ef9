// The platform's bulk search finds what reading one element after the other finds.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "SceneProcess.h"
#include "extractors/AccessibilityElement.h"

namespace kestro {
namespace {

// Random trees, with what makes a search go wrong: attributes that fail, hang or are of other
// types, lists that hold more than elements, and children that lead back.
class RandomTree {
 public:
  explicit RandomTree(unsigned seed) : random_(seed) {}

  std::string scene() {
    return R"({"applications": [{"pid": 1, "name": "A", "accessibility": {"children": [)" +
           element(0) + "]}}]}";
  }

  std::size_t pick(std::size_t count) { return random_() % count; }

 private:
  std::string element(int level) {
    constexpr int deepest = 6;
    const int number = count_++;
    std::string text = R"({"id": "e)" + std::to_string(number) + R"(", "AXRole": )" + role();
    if (pick(2) == 0) text += R"(, "AXDOMClassList": )" + classes();
    if (pick(8) == 0) text += R"(, "AXSubrole": "AXTarget")";
    if (pick(15) == 0) {
      return text + R"(, "AXChildren": [{"ref": "e)" + std::to_string(pick(number + 1)) + "\"}" +
             (pick(2) == 0 ? R"(, "text")" : "") + "]}";
    }
    if (pick(20) == 0) return text + R"(, "AXChildren": {"error": -25204}})";
    text += R"(, "children": [)";
    const std::size_t children = level < deepest ? pick(5) : 0;
    for (std::size_t child = 0; child < children; ++child) {
      text += (child == 0 ? "" : ", ") + element(level + 1);
    }
    return text + "]}";
  }

  std::string role() {
    const char* roles[]{R"("AXGroup")",         R"("AXGroup")",
                        R"("AXButton")",        "7",
                        R"({"error": -25212})", R"({"hang": 99, "value": "AXButton"})"};
    return roles[pick(std::size(roles))];
  }

  std::string classes() {
    const char* lists[]{"[]", R"(["a"])", R"(["a", "b"])", R"(["ab"])", R"(["b", 3])", R"("b")"};
    return lists[pick(std::size(lists))];
  }

  std::mt19937 random_;
  int count_ = 0;
};

std::string idsOf(const AccessibilityElements& elements) {
  std::string ids;
  for (const AccessibilityElement& element : elements) {
    ids += element.handle().reference().description() + " ";
  }
  return ids;
}

using Conditions = AccessibilityElement::Conditions;

bool meets(const AccessibilityElement& element, const Conditions& conditions) {
  return std::ranges::all_of(conditions, [&](const ElementCondition& condition) {
    const auto name = condition.attribute;
    return name == attribute::domClassList ? element.hasDOMClass(condition.text)
                                           : element.stringAttribute(name) == condition.text;
  });
}

TEST(ElementSearch, findsWhatAPlainSearchFinds) {
  const Conditions choices[]{
      {{attribute::role, "AXButton"}},
      {{attribute::role, "AXGroup"}, hasClass("a")},
      {hasClass("b")},
      {{attribute::subrole, "AXTarget"}, {attribute::role, "AXGroup"}},
      {},
  };
  int found = 0;
  for (unsigned seed = 0; seed < 300; ++seed) {
    RandomTree tree(seed);
    SceneProcess scene(tree.scene());
    const AccessibilityElement root(scene.process(), scene.element("e0"));
    const Conditions& conditions = choices[tree.pick(std::size(choices))];
    const auto depth = static_cast<std::int64_t>(tree.pick(8)) - 1;
    const Accessibility& accessibility = scene.process().platform().accessibility;
    const auto before = accessibility.requestCount();
    const auto inBulk = root.firstDescendantWith(conditions, depth);
    ASSERT_EQ(accessibility.requestCount() - before, 1u);

    const auto plainly = root.firstDescendant(
        depth, [&](const AccessibilityElement& element) { return meets(element, conditions); });
    ASSERT_EQ(inBulk, plainly) << tree.scene();
    found += plainly ? 1 : 0;

    // In the order of the plain search, and no element that it would not reach.
    AccessibilityElements all;
    root.firstDescendant(depth, [&](const AccessibilityElement& element) {
      if (meets(element, conditions)) all.push_back(element);
      return false;
    });
    const std::size_t most = 1 + tree.pick(6);
    if (all.size() > most) all.erase(all.begin() + static_cast<std::ptrdiff_t>(most), all.end());
    ASSERT_EQ(idsOf(root.descendantsWith(conditions, depth, most)), idsOf(all)) << tree.scene();
  }
  EXPECT_GT(found, 100);
}

TEST(ElementCondition, aValueOfAnotherTypeCountsAsAbsent) {
  using Kind = ElementCondition::Kind;
  const AttributeValue text("a");
  const AttributeValue address(WebAddress{"a"});
  const AttributeValue list(AttributeValue::List{"b", "a"});
  const AttributeValue mixed(AttributeValue::List{"a", std::int64_t{3}});
  const struct {
    Kind kind;
    std::vector<AttributeValue> met, missed;
  } cases[] = {
      {Kind::text, {text}, {address, list, mixed, "A", true}},
      {Kind::sameText, {text, "\u200Ea"}, {address, list, mixed, "A", "b"}},
      {Kind::member, {list}, {text, address, mixed, AttributeValue::List{}}},
      {Kind::address, {text, address}, {list, mixed, WebAddress{"b"}}},
  };
  for (const auto& [kind, met, missed] : cases) {
    const ElementCondition condition{"AXAny", "a", kind};
    const auto holds = [&](const AttributeValue& value) { return condition.holdsFor(value); };
    EXPECT_TRUE(std::ranges::all_of(met, holds)) << static_cast<int>(kind);
    EXPECT_TRUE(std::ranges::none_of(missed, holds)) << static_cast<int>(kind);
  }
}

}  // namespace
}  // namespace kestro
