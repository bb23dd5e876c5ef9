#include "linux/storage/PlistUserDefaults.h"

#include <fmt/format.h>

#include <algorithm>

#include "linux/storage/LinuxDirectories.h"
#include "linux/storage/PropertyListFile.h"
#include "linux/storage/WholeFile.h"

namespace kestro {
namespace {

constexpr std::size_t longestSuiteName = 200;

bool isControlCharacter(unsigned char character) {
  return character < 0x20 || character == 0x7f;
}

bool isUsableFileName(std::string_view name) {
  return !name.empty() && name.size() <= longestSuiteName && name.front() != '.' &&
         name.find('/') == std::string_view::npos && std::ranges::none_of(name, isControlCharacter);
}

// Beside the file, with a number when an earlier malformed one is kept already.
std::filesystem::path unusedPathAside(const std::filesystem::path& path) {
  const std::string first = path.string() + ".malformed";
  std::string candidate = first;
  std::error_code error;
  for (int number = 2; std::filesystem::exists(candidate, error); ++number)
    candidate = fmt::format("{}.{}", first, number);
  return candidate;
}

}  // namespace

PlistUserDefaults::Stamp PlistUserDefaults::stamp() const {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) return {};
  return {
      status.st_ino, status.st_size,
      static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec};
}

void PlistUserDefaults::refresh() const {
  const Stamp now = stamp();
  const bool isKnown = read_ == now;
  if (isKnown && !isUnreadable_) return;
  const bool exists = now != Stamp{};
  const auto text = exists ? readWholeFile(path_) : std::nullopt;
  if (isKnown && !text) return;
  read_ = now;
  isUnreadable_ = exists && !text;
  isMalformed_ = false;
  values_ = {};
  if (isUnreadable_) {
    log_.write(fmt::format("{} cannot be read; it counts as empty and is left as it is",
                           path_.filename().string()));
  }
  if (!text) return;
  if (auto dictionary = propertyListFromText(*text)) {
    values_ = std::move(*dictionary);
    return;
  }
  setAside();
}

// At once: whoever writes next, here or elsewhere, must find nothing to overwrite.
void PlistUserDefaults::setAside() const {
  const auto aside = unusedPathAside(path_);
  std::error_code error;
  std::filesystem::rename(path_, aside, error);
  isMalformed_ = static_cast<bool>(error);
  log_.write(
      fmt::format("{} is no property list, or nested too deeply; it counts as empty and {}",
                  path_.filename().string(),
                  error ? "cannot be set aside" : "is kept as " + aside.filename().string()));
  read_ = stamp();
}

std::optional<PropertyList> PlistUserDefaults::value(std::string_view key) const {
  refresh();
  const PropertyList* found = values_.find(key);
  return found ? std::optional(*found) : std::nullopt;
}

void PlistUserDefaults::set(std::string_view key, PropertyList value) {
  refresh();
  values_.set(std::string(key), std::move(value));
  write();
}

void PlistUserDefaults::remove(std::string_view key) {
  refresh();
  if (!values_.find(key)) return;
  values_.remove(key);
  write();
}

void PlistUserDefaults::write() {
  makePrivateDirectory(path_.parent_path());
  if (isMalformed_) setAside();
  if (isUnreadable_ || isMalformed_ || !replaceFile(path_, propertyListAsXml(values_))) {
    log_.write(fmt::format("{} cannot be written", path_.filename().string()));
  }
  read_ = stamp();
}

PlistUserDefaultsDatabase::PlistUserDefaultsDatabase(std::filesystem::path directory,
                                                     SystemLog& log)
    : directory_(std::move(directory)),
      log_(log),
      standard_(directory_ / "KestroHelper.plist", log),
      helperPreferences_(directory_ / "HelperPreferences.plist", log),
      mainAppPreferences_(directory_ / "MainAppPreferences.plist", log) {
  makePrivateDirectory(directory_);
}

UserDefaults* PlistUserDefaultsDatabase::suite(std::string_view name) {
  if (!isUsableFileName(name)) return nullptr;
  auto found = suites_.find(name);
  if (found == suites_.end()) {
    const auto path = directory_ / "suites" / (std::string(name) + ".plist");
    found = suites_.emplace(name, std::make_unique<PlistUserDefaults>(path, log_)).first;
  }
  return found->second.get();
}

UserDefaults& PlistUserDefaultsDatabase::product(ProductStore store) {
  return store == ProductStore::helperPreferences ? helperPreferences_ : mainAppPreferences_;
}

}  // namespace kestro
