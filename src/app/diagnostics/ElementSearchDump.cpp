#include "app/diagnostics/ElementSearchDump.h"

#include <algorithm>
#include <deque>
#include <vector>

#include "app/diagnostics/PrintLine.h"
#include "extractors/AccessibilityDescription.h"
#include "extractors/AccessibilityElement.h"
#include "foundation/TextCase.h"

namespace kestro {
namespace {

// By one search, ancestors and descendants of its matches taken together.
constexpr std::size_t mostElementsPrinted = 5 * mostElementsExamined;

// role=AXButton as summaries have it: role='AXButton'.
std::string asPairOfSummary(std::string_view query) {
  const auto equalsSign = query.find('=');
  if (equalsSign == std::string_view::npos) return std::string(query);
  return fmt::format("{}='{}'", query.substr(0, equalsSign), query.substr(equalsSign + 1));
}

// An element on the way of a search. Its summary is kept: many matches share their ancestors.
struct Examined {
  AccessibilityElement element;
  std::size_t index;       // among the children of `parent`
  const Examined* parent;  // null for the root
  std::int64_t pathLength;
  std::string summary;
};

class TreeSearch {
 public:
  TreeSearch(Process& process, const std::string& needle)
      : needle_(needle), maxRecursionLevel_(maxRecursionLevel(process)) {}

  void examine(const AccessibilityElement& element, std::size_t index = 0,
               const Examined* parent = nullptr) {
    if (examined_.size() == mostElementsExamined) return;
    const std::int64_t pathLength = parent ? parent->pathLength + 1 : 1;
    const Examined& current = examined_.emplace_back(
        Examined{element, index, parent, pathLength, attributeSummary(element, SummaryForm::full)});
    if (lowercased(current.summary).find(needle_) != std::string::npos) {
      matches_.push_back(&current);
    }
    if (pathLength > maxRecursionLevel_) return;
    const auto children = element.children();
    for (std::size_t position = 0; position < children.size(); ++position)
      examine(children[position], position, &current);
  }

  bool hasReachedLimit() const { return examined_.size() == mostElementsExamined; }
  // In pre-order. Valid while the search lives.
  const std::vector<const Examined*>& matches() const { return matches_; }

 private:
  const std::string& needle_;
  std::int64_t maxRecursionLevel_;
  std::deque<Examined> examined_;  // its elements stay where they are
  std::vector<const Examined*> matches_;
};

class MatchPrinter {
 public:
  explicit MatchPrinter(Process& process) : process_(process) {}

  bool hasReachedLimit() const { return elementsLeft_ == 0; }

  void print(const Examined& match) {
    printPathTo(match);
    printSubtreeOf(match);
  }

 private:
  void printPathTo(const Examined& match) {
    std::vector<const Examined*> path;
    for (const Examined* entry = &match; entry; entry = entry->parent)
      path.push_back(entry);
    elementsLeft_ -= std::min(elementsLeft_, path.size());

    std::string indentation;
    for (auto entry = path.rbegin(); entry != path.rend(); ++entry) {
      printLine(process_, "{}({}) {}{}", indentation, (*entry)->index, (*entry)->summary,
                *entry == &match ? " <--- matched element" : "");
      indentation += levelMark;
    }
  }

  // The first line is the element itself, which ends its path.
  void printSubtreeOf(const Examined& match) {
    const auto text = treeDescription(match.element, maxRecursionLevel(process_), elementsLeft_);
    if (!text) return;
    std::string indentation;
    for (std::int64_t level = 1; level < match.pathLength; ++level)
      indentation += levelMark;
    std::string_view rest = *text;
    for (auto end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
      rest.remove_prefix(end + 1);
      printLine(process_, "{}{}", indentation, rest.substr(0, rest.find('\n')));
    }
  }

  static constexpr std::string_view levelMark = "|\t";

  Process& process_;
  std::size_t elementsLeft_ = mostElementsPrinted;
};

}  // namespace

ElementSearchDump::ElementSearchDump(std::string_view query)
    : needle_(lowercased(asPairOfSummary(query))) {}

void ElementSearchDump::printMatches(const AccessibilityElement& root,
                                     const std::string& label) const {
  Process& process = root.process();
  TreeSearch search(process, needle_);
  search.examine(root);
  const auto& matches = search.matches();
  if (search.hasReachedLimit()) {
    printLine(process, "\n\n{} - Only {} elements were examined.", label, mostElementsExamined);
  }
  if (matches.empty()) return;
  printLine(process, "\n\n{} - Found {} matches:", label, matches.size());
  MatchPrinter printer(process);
  for (std::size_t position = 0; position < matches.size(); ++position) {
    if (printer.hasReachedLimit()) return printLine(process, "\nThe others are too much to show.");
    printLine(process, "\nMatch #{}:", position + 1);
    printer.print(*matches[position]);
  }
}

}  // namespace kestro
