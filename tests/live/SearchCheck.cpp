// Compares searches by an application's own means with reading one element after the other, in the
// front window of the desktop it is started on. Prints what each found and what it cost; exit
// status 1 when they differ. Run by the live suite.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "extractors/AccessibilityDescription.h"
#include "extractors/AccessibilityElement.h"
#include "linux/LinuxDesktop.h"
#include "platform/Accessibility.h"
#include "platform/Process.h"
#include "platform/Workspace.h"

namespace kestro {
namespace {

using Conditions = AccessibilityElement::Conditions;

const std::pair<const char*, Conditions> searches[]{
    {"id", {{attribute::domIdentifier, "deep-target"}}},
    {"button", {{attribute::role, std::string(role::button)}}},
    {"text field", {{attribute::role, std::string(role::textField)}}},
    {"heading", {{attribute::role, std::string(role::heading)}}},
    {"page", {{attribute::role, std::string(role::webArea)}}},
    {"main", {{attribute::subrole, std::string(subrole::landmarkMain)}}},
    {"navigation", {{attribute::subrole, std::string(subrole::landmarkNavigation)}}},
    {"group", {{attribute::subrole, std::string(subrole::applicationGroup)}}},
    {"tab panel", {{attribute::subrole, std::string(subrole::tabPanel)}}},
    {"section header", {{attribute::subrole, std::string(subrole::sectionHeader)}}},
    {"toggle", {{attribute::subrole, std::string(subrole::toggleButton)}}},
    {"check box", {{attribute::role, std::string(role::checkBox)}}},
    {"menu button", {{attribute::role, std::string(role::popUpButton)}}},
    {"article", {{attribute::subrole, std::string(subrole::documentArticle)}}},
    {"class", {hasClass("second-class")}},
    {"class of links", {{attribute::role, std::string(role::link)}, hasClass("second-class")}},
    {"title", {{attribute::role, std::string(role::link)}, {attribute::title, "Wanted link"}}},
    {"nothing", {{attribute::domIdentifier, "nowhere"}}},
};

bool meets(const AccessibilityElement& element, const Conditions& conditions) {
  return std::ranges::all_of(conditions, [&](const ElementCondition& condition) {
    return condition.attribute == attribute::domClassList
               ? element.hasDOMClass(condition.text)
               : element.stringAttribute(condition.attribute) == condition.text;
  });
}

// In the order of the search, each element once.
AccessibilityElements foundPlainly(const AccessibilityElement& root, const Conditions& conditions,
                                   std::int64_t depth) {
  AccessibilityElements all;
  root.firstDescendant(depth, [&](const AccessibilityElement& element) {
    if (meets(element, conditions) && !containsElement(all, element)) all.push_back(element);
    return false;
  });
  return all;
}

std::string briefly(const AccessibilityElements& elements) {
  if (elements.empty()) return "nothing";
  return fmt::format("{}: {}", elements.size(),
                     attributeSummary(elements.front(), SummaryForm::brief));
}

// The front window, in a generation of reads of its own: nothing that was read before is reused.
std::optional<AccessibilityElement> frontWindow(Process& process) {
  const Platform& platform = process.platform();
  const auto application = platform.workspace.frontmostApplication();
  const auto handle =
      application ? platform.accessibility.applicationElement(application->processIdentifier)
                  : std::nullopt;
  if (!handle) return std::nullopt;
  const AccessibilityElement element(process, *handle);
  if (element.booleanAttribute(attribute::enhancedUserInterface) != true) {
    element.setStringValue("1", attribute::enhancedUserInterface);
  }
  return element.elementAttribute(attribute::mainWindow);
}

// A browser shows its page's tree a while after the page: the last element of it comes last.
bool waitForPage(Process& process) {
  constexpr int mostTries = 100;
  for (int tries = 0; tries < mostTries; ++tries) {
    const auto window = frontWindow(process);
    const auto end =
        window ? window->firstDescendantWith({{attribute::domIdentifier, "end-of-page"}}, 20)
               : std::nullopt;
    if (end) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  fmt::print("the page's end is not found\n");
  return false;
}

struct Cost {
  std::uint64_t requests;
  double milliseconds;
};

template <class Search>
std::pair<AccessibilityElements, Cost> measured(Process& process, Search search) {
  const auto window = frontWindow(process);
  if (!window) return {{}, {}};
  const Accessibility& accessibility = process.platform().accessibility;
  const auto requests = accessibility.requestCount();
  const auto begun = std::chrono::steady_clock::now();
  auto found = search(*window);
  const std::chrono::duration<double, std::milli> duration =
      std::chrono::steady_clock::now() - begun;
  return {std::move(found), {accessibility.requestCount() - requests, duration.count()}};
}

bool isSame(Process& process, const char* name, const Conditions& conditions, std::int64_t depth) {
  const auto [inBulk, bulkCost] = measured(process, [&](const AccessibilityElement& window) {
    return window.descendantsWith(conditions, depth, mostElementsExamined);
  });
  const auto [first, firstCost] = measured(process, [&](const AccessibilityElement& window) {
    const auto element = window.firstDescendantWith(conditions, depth);
    return element ? AccessibilityElements{*element} : AccessibilityElements{};
  });
  const auto [plainly, plainCost] = measured(process, [&](const AccessibilityElement& window) {
    return foundPlainly(window, conditions, depth);
  });
  fmt::print(
      "{:>15} to {:>2}: all {} requests {:.1f} ms, first {} {:.1f} ms, plainly {} {:.1f} ms\n",
      name, depth, bulkCost.requests, bulkCost.milliseconds, firstCost.requests,
      firstCost.milliseconds, plainCost.requests, plainCost.milliseconds);
  const bool isFirst =
      first.empty() ? plainly.empty() : !plainly.empty() && first.front() == plainly.front();
  if (inBulk == plainly && isFirst) return true;
  fmt::print("  in bulk {}\n  first {}\n  plainly {}\n", briefly(inBulk), briefly(first),
             briefly(plainly));
  return false;
}

int check(Desktop& desktop) {
  Process process(desktop.platform());
  bool allSame = waitForPage(process);
  for (const std::int64_t depth : {20, 8}) {
    for (const auto& [name, conditions] : searches) {
      allSame = isSame(process, name, conditions, depth) && allSame;
    }
  }
  return allSame ? 0 : 1;
}

}  // namespace
}  // namespace kestro

int main() {
  kestro::DesktopOptions options;
  options.servesSession = false;  // it looks, beside a helper perhaps
  const auto desktop = kestro::makeLinuxDesktop(std::move(options));
  return kestro::check(*desktop);
}
