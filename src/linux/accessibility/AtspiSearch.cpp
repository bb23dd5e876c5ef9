#include "linux/accessibility/AtspiSearch.h"

#include <algorithm>

namespace kestro {
namespace {

using Kind = AtspiElement::Kind;
using Conditions = std::vector<ElementCondition>;

constexpr std::size_t mostCandidatesRead = 1000;
// The first candidates are often enough.
constexpr std::size_t fewestTogether = 16;
constexpr std::size_t mostTogether = 256;

bool isIdentifier(const ElementCondition& condition) {
  return condition.attribute == "AXIdentifier" || condition.attribute == "AXDOMIdentifier";
}

// A subrole is never judged by the application alone: it narrows where nothing else does.
void addSubrole(const std::string& subrole, bool hasIdentifier, AtspiMatchRule& rule) {
  const auto roles = atspiRolesOfSubrole(subrole);
  if (!roles.empty()) {
    if (rule.roles.empty()) rule.roles = roles;
    return;
  }
  const std::string_view word = xmlRole(subrole);
  // Of several attributes one is enough: an identifier says more than a kind of element.
  if (!word.empty() && !hasIdentifier) rule.attributes = {{"xml-roles", std::string(word)}};
}

bool dependsOnAttributes(std::string_view axRole) {
  return std::ranges::any_of(atspiRoles(axRole).roles, roleDependsOnAttributes);
}

}  // namespace

AtspiQuestion questionFor(const Conditions& conditions) {
  AtspiQuestion question;
  bool hasIdentifier = false;
  for (const ElementCondition& condition : conditions) {
    bool isJudged = false;
    if (condition.attribute == "AXRole" && question.rule.roles.empty()) {
      const auto choice = atspiRoles(condition.text);
      question.rule.roles = choice.roles;
      isJudged = choice.isCertain;
    } else if (condition.attribute == "AXSubrole") {
      addSubrole(condition.text, hasIdentifier, question.rule);
    } else if (isIdentifier(condition) && !hasIdentifier) {
      question.rule.attributes = {{"id", condition.text}};
      isJudged = hasIdentifier = true;
    }
    if (!isJudged) question.unjudged.push_back(condition);
  }
  return question;
}

AccessibilityResult<std::vector<UIElement>> AtspiSearch::find(const AtspiElement& root,
                                                              const ElementSearch& search) {
  Progress progress{search, root.process(), questionFor(search.conditions), {}, {}};
  examine(makeElement(root.kind(), root.process(), root.object()), progress);
  if (search.maxDepth < 1 || progress.isOver()) return progress.found;

  AccessibilityError error = AccessibilityError::success;
  const auto page = reader_.activeDocument(root.object());
  if (root.kind() == Kind::pageScrollArea) {
    if (!page.value) return progress.found;
    error = searchPage(*page.value, search.maxDepth - 1, progress);
  } else {
    // A window's page comes first, in its scroll area.
    if (page.value) {
      examine(makeElement(Kind::pageScrollArea, root.process(), root.object()), progress);
      error = searchPage(*page.value, search.maxDepth - 2, progress);
    }
    if (error == AccessibilityError::success) {
      error = searchBelow(root.object(), search.maxDepth, progress);
    }
  }
  if (error != AccessibilityError::success) return error;
  return progress.found;
}

void AtspiSearch::examine(const UIElement& element, Progress& progress) {
  if (progress.isOver()) return;
  const AtspiElement& known = atspiElementOf(element);
  if (!meets(known, progress.search.conditions)) return;
  progress.found.push_back(element);
  if (known.kind() == Kind::object) progress.foundObjects.insert(known.object());
}

AccessibilityError AtspiSearch::searchPage(const AtspiObject& page, std::int64_t levels,
                                           Progress& progress) {
  if (levels < 0) return AccessibilityError::success;
  examine(makeObjectElement(progress.process, page), progress);
  return searchBelow(page, levels, progress);
}

AccessibilityError AtspiSearch::searchBelow(const AtspiObject& top, std::int64_t levels,
                                            Progress& progress) {
  if (levels < 1 || progress.isOver()) return AccessibilityError::success;
  const bool mustRead = !progress.question.unjudged.empty();
  const auto most = mustRead ? mostCandidatesRead : progress.search.mostExamined;
  const auto candidates =
      reader_.matches(top, progress.question.rule, static_cast<std::int32_t>(most));
  // The application may answer other requests.
  if (candidates.error == AccessibilityError::attributeUnsupported) {
    return AccessibilityError::notImplemented;
  }
  if (!candidates.value) return candidates.error;
  std::vector<AtspiObject> together;
  std::size_t count = fewestTogether;
  for (const AtspiObject& candidate : *candidates.value) {
    together.push_back(candidate);
    if (together.size() < count) continue;
    judge(together, top, levels, progress);
    if (progress.isOver()) return AccessibilityError::success;
    together.clear();
    count = std::min(2 * count, mostTogether);
  }
  judge(together, top, levels, progress);
  return AccessibilityError::success;
}

void AtspiSearch::judge(const std::vector<AtspiObject>& candidates, const AtspiObject& top,
                        std::int64_t levels, Progress& progress) {
  prefetch(candidates, progress.question.unjudged);
  for (const AtspiObject& candidate : candidates) {
    if (progress.isOver()) return;
    const AtspiElement element(Kind::object, progress.process, candidate);
    if (!meets(element, progress.question.unjudged) || !isWithin(candidate, top, levels)) continue;
    if (!progress.foundObjects.insert(candidate).second) continue;
    progress.found.push_back(makeObjectElement(progress.process, candidate));
  }
}

bool AtspiSearch::meets(const AtspiElement& element, const Conditions& conditions) {
  return std::ranges::all_of(conditions, [&](const ElementCondition& condition) {
    const auto value = attributes_.value(element, condition.attribute);
    return value.value && condition.holdsFor(*value.value);
  });
}

bool AtspiSearch::isWithin(const AtspiObject& object, const AtspiObject& top, std::int64_t levels) {
  AtspiObject current = object;
  for (std::int64_t climbed = 0; climbed < levels; ++climbed) {
    const auto parent = reader_.parent(current);
    if (!parent.value) return false;
    if (*parent.value == top) return true;
    current = *parent.value;
  }
  return false;
}

void AtspiSearch::prefetch(const std::vector<AtspiObject>& objects, const Conditions& conditions) {
  bool needsRoles = false;
  bool needsAttributes = false;
  bool needsNames = false;
  for (const ElementCondition& condition : conditions) {
    const auto& attribute = condition.attribute;
    const bool isText =
        attribute == "AXTitle" || attribute == "AXDescription" || attribute == "AXValue";
    const bool isOfRole = attribute == "AXRole" || attribute == "AXSubrole";
    needsNames = needsNames || isText;
    needsRoles = needsRoles || isText || isOfRole || attribute == "AXURL";
    needsAttributes = needsAttributes || attribute == "AXDOMClassList" ||
                      attribute == "AXSubrole" || (isOfRole && dependsOnAttributes(condition.text));
  }
  if (needsRoles) reader_.prefetchRoles(objects);
  if (needsAttributes) reader_.prefetchAttributes(objects);
  if (needsNames) reader_.prefetchNames(objects);
}

}  // namespace kestro
