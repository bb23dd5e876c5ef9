#include "linux/applications/ApplicationIdentity.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "linux/applications/BundleIdentifiers.h"
#include "linux/process/ProcessInformation.h"

namespace kestro {
namespace {

// Bounds what titles that change their window class could make the cache hold.
constexpr std::size_t mostIdentities = 512;

std::string lowerCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

std::string fileName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

bool isInterpreter(std::string_view program) {
  static constexpr std::array prefixes{"python", "perl", "ruby", "node",  "electron", "java",
                                       "gjs",    "bash", "sh",   "dash",  "wine",     "mono",
                                       "env",    "qml",  "lua",  "dotnet"};
  return std::ranges::any_of(prefixes, [&](std::string_view prefix) {
    if (!program.starts_with(prefix)) return false;
    const auto rest = program.substr(prefix.size());
    return rest.empty() || std::isdigit(static_cast<unsigned char>(rest.front())) || rest == "-bin";
  });
}

template <class Predicate>
const DesktopEntry* find(const std::vector<DesktopEntry>& entries, Predicate predicate) {
  const auto found = std::ranges::find_if(entries, predicate);
  return found == entries.end() ? nullptr : &*found;
}

const DesktopEntry* findByGtkIdentifier(const std::vector<DesktopEntry>& entries,
                                        const ApplicationTraits& traits) {
  const std::string& identifier = traits.gtkApplicationIdentifier;
  if (identifier.empty()) return nullptr;
  return find(entries, [&](const auto& entry) { return entry.identifier == identifier; });
}

const DesktopEntry* findByStartupClass(const std::vector<DesktopEntry>& entries,
                                       const ApplicationTraits& traits) {
  return find(entries, [&](const auto& entry) {
    return !entry.windowClass.empty() &&
           (entry.windowClass == traits.className || entry.windowClass == traits.instanceName);
  });
}

const DesktopEntry* findByIdentifier(const std::vector<DesktopEntry>& entries,
                                     const ApplicationTraits& traits) {
  for (const std::string* name : {&traits.className, &traits.instanceName}) {
    const std::string wanted = lowerCase(*name);
    if (wanted.empty()) continue;
    const auto* entry =
        find(entries, [&](const auto& each) { return lowerCase(each.identifier) == wanted; });
    if (entry) return entry;
  }
  std::string ending = ".";
  ending += lowerCase(traits.className);
  if (ending.size() == 1) return nullptr;
  return find(entries,
              [&](const auto& each) { return lowerCase(each.identifier).ends_with(ending); });
}

const DesktopEntry* findByProgram(const std::vector<DesktopEntry>& entries,
                                  const ApplicationTraits& traits) {
  const std::string program = fileName(traits.executablePath);
  if (program.empty() || isInterpreter(program)) return nullptr;
  return find(entries, [&](const auto& entry) { return entry.program == program; });
}

bool isBrowserEntry(const DesktopEntry& entry) {
  return entry.opensWebAddresses || isNameOfBrowser(entry.identifier) ||
         isNameOfBrowser(entry.program);
}

std::optional<std::string> present(std::string text) {
  return text.empty() ? std::nullopt : std::optional(std::move(text));
}

}  // namespace

const DesktopEntry* findDesktopEntry(const std::vector<DesktopEntry>& entries,
                                     const ApplicationTraits& traits) {
  for (const auto rule :
       {findByGtkIdentifier, findByStartupClass, findByIdentifier, findByProgram}) {
    if (const DesktopEntry* entry = rule(entries, traits)) return entry;
  }
  return nullptr;
}

RunningApplication ApplicationIdentity::application(ProcessIdentifier process,
                                                    const X11Window* window) {
  const Identity& identity = identityOf(process, window);
  return {process, identity.bundleIdentifier, identity.name, executablePath(process),
          identity.bundlePath};
}

bool ApplicationIdentity::isBrowser(ProcessIdentifier process, const X11Window& window) {
  return identityOf(process, &window).isBrowser;
}

const ApplicationIdentity::Identity& ApplicationIdentity::identityOf(ProcessIdentifier process,
                                                                     const X11Window* window) {
  ApplicationTraits traits;
  if (window) {
    traits = {window->gtkApplicationIdentifier, window->instanceName, window->className, {}};
  }
  traits.executablePath = executablePath(process).value_or("");
  return identityOf(traits);
}

const ApplicationIdentity::Identity& ApplicationIdentity::identityOf(
    const ApplicationTraits& traits) {
  const std::uint64_t version = entries_.version();
  if (version != entriesVersion_ || identities_.size() > mostIdentities) identities_.clear();
  entriesVersion_ = version;
  auto found = identities_.find(traits);
  if (found == identities_.end()) found = identities_.emplace(traits, makeIdentity(traits)).first;
  return found->second;
}

ApplicationIdentity::Identity ApplicationIdentity::makeIdentity(const ApplicationTraits& traits) {
  const DesktopEntry* entry = findDesktopEntry(entries_.all(), traits);
  const std::string program = fileName(traits.executablePath);
  Identity identity;
  if (entry) identity.bundleIdentifier = bundleIdentifierForName(entry->identifier);
  if (entry && !identity.bundleIdentifier) identity.bundleIdentifier = entry->identifier;
  if (!identity.bundleIdentifier) identity.bundleIdentifier = bundleIdentifierForName(program);
  if (!identity.bundleIdentifier) {
    identity.bundleIdentifier = present(lowerCase(traits.className));
  }
  if (!identity.bundleIdentifier) identity.bundleIdentifier = present(program);
  if (entry) {
    identity.name = present(entry->name);
    identity.bundlePath = entry->path.string();
  }
  if (!identity.name) identity.name = present(traits.className);
  if (!identity.name) identity.name = present(program);
  identity.isBrowser = entry ? isBrowserEntry(*entry)
                             : isNameOfBrowser(program) || !bundleIdentifierForName(program);
  return identity;
}

}  // namespace kestro
