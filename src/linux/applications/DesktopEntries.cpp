#include "linux/applications/DesktopEntries.h"

#include <algorithm>
#include <set>

#include "foundation/Utf8.h"
#include "linux/storage/WholeFile.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds shortestInterval{5};
constexpr int deepestDirectory = 8;

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' '))
    text.remove_prefix(1);
  while (text.ends_with(' '))
    text.remove_suffix(1);
  return text;
}

// The members of the file's main group.
std::map<std::string, std::string, std::less<>> membersOf(std::string_view text) {
  std::map<std::string, std::string, std::less<>> members;
  bool isInside = false;
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.starts_with('[')) isInside = trimmed(line) == "[Desktop Entry]";
    const std::size_t equals = line.find('=');
    if (!isInside || line.starts_with('#') || equals == std::string_view::npos) continue;
    members.emplace(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
  }
  return members;
}

// The keys under which a text in the user's languages may stand: "Name[de_AT]", "Name[de]", "Name".
std::vector<std::string> localizedKeys(std::string_view key,
                                       const std::vector<std::string>& languages) {
  std::vector<std::string> keys;
  for (std::string language : languages) {
    std::ranges::replace(language, '-', '_');
    keys.push_back(std::string(key) + "[" + language + "]");
    const std::string base = language.substr(0, language.find('_'));
    keys.push_back(std::string(key) + "[" + base + "]");
    if (base == "en") break;  // the plain text is English
  }
  keys.emplace_back(key);
  return keys;
}

// "env A=b /usr/bin/tool --x %U" → "tool"; quotes around the program are taken off.
std::string programOf(std::string_view command) {
  while (!command.empty()) {
    command = trimmed(command);
    const char quote = command.starts_with('"') ? '"' : ' ';
    const std::size_t begin = quote == '"' ? 1 : 0;
    const std::size_t end = std::min(command.find(quote, begin), command.size());
    std::string_view word = command.substr(begin, end - begin);
    command.remove_prefix(std::min(end + 1, command.size()));
    const std::string_view file = word.substr(word.rfind('/') + 1);
    if (file == "env" || word.find('=') != std::string_view::npos) continue;
    return std::string(file);
  }
  return {};
}

// In a list of types that end with ";".
bool namesWebScheme(std::string_view types) {
  while (!types.empty()) {
    const std::size_t end = std::min(types.find(';'), types.size());
    const std::string_view type = trimmed(types.substr(0, end));
    if (type == "x-scheme-handler/http" || type == "x-scheme-handler/https") return true;
    types.remove_prefix(std::min(end + 1, types.size()));
  }
  return false;
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              const std::vector<std::string>& languages) {
  const auto members = membersOf(text);
  const auto member = [&](std::string_view key) {
    const auto found = members.find(key);
    return found == members.end() ? std::string() : found->second;
  };
  if (member("Type") != "Application" || !isValidUtf8(text)) return std::nullopt;
  DesktopEntry entry;
  for (const std::string& key : localizedKeys("Name", languages)) {
    if (entry.name.empty()) entry.name = member(key);
  }
  entry.windowClass = member("StartupWMClass");
  entry.exec = member("Exec");
  entry.program = programOf(entry.exec);
  entry.opensWebAddresses = namesWebScheme(member("MimeType"));
  return entry;
}

const std::vector<DesktopEntry>& DesktopEntries::all() {
  refresh();
  return entries_;
}

std::uint64_t DesktopEntries::version() {
  refresh();
  return version_;
}

void DesktopEntries::refresh() {
  const auto now = std::chrono::steady_clock::now();
  if (version_ > 0 && now - lookedAt_ < shortestInterval) return;
  lookedAt_ = now;
  if (version_ > 0 && !hasChanged()) return;
  ++version_;
  entries_.clear();
  times_.clear();
  for (const fs::path& directory : directories_)
    readDirectory(directory);
}

bool DesktopEntries::hasChanged() const {
  return std::ranges::any_of(times_, [](const auto& known) {
    std::error_code error;
    return fs::last_write_time(known.first, error) != known.second;
  });
}

// A directory that does not exist is noted too, so that its making is a change.
void DesktopEntries::noteTime(const fs::path& directory) {
  std::error_code error;
  times_[directory] = fs::last_write_time(directory, error);
}

void DesktopEntries::readDirectory(const fs::path& top) {
  noteTime(top);
  std::set<std::string> known;
  for (const DesktopEntry& entry : entries_)
    known.insert(entry.identifier);
  std::vector<fs::path> files;
  std::error_code error;
  const auto options = fs::directory_options::skip_permission_denied;
  for (fs::recursive_directory_iterator position(top, options, error), end;
       !error && position != end; position.increment(error)) {
    std::error_code ignored;  // of a link that leads nowhere
    if (position->is_directory(ignored)) noteTime(position->path());
    if (position.depth() >= deepestDirectory) position.disable_recursion_pending();
    if (position->path().extension() == ".desktop") files.push_back(position->path());
  }
  std::ranges::sort(files);
  for (const fs::path& file : files) {
    std::string identifier = file.lexically_relative(top).replace_extension().string();
    std::ranges::replace(identifier, '/', '-');
    if (!known.insert(identifier).second) continue;
    const auto text = readWholeFile(file);
    auto entry = text ? parseDesktopEntry(*text, languages_) : std::nullopt;
    if (!entry) continue;
    entry->identifier = std::move(identifier);
    entry->path = file;
    entries_.push_back(std::move(*entry));
  }
}

}  // namespace kestro
