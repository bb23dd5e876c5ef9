#include "linux/storage/LinuxFiles.h"

#include "foundation/StringsText.h"
#include "linux/storage/LinuxDirectories.h"
#include "linux/storage/PropertyListFile.h"
#include "linux/storage/WholeFile.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> reason(const std::error_code& error) {
  return error ? std::optional(error.message()) : std::nullopt;
}

}  // namespace

std::optional<PropertyListDictionary> LinuxFiles::dictionary(const std::string& path) {
  const auto text = readWholeFile(path);
  if (!text) return std::nullopt;
  auto contents = propertyListFromText(*text);
  return contents ? contents : dictionaryFromStringsText(*text);
}

bool LinuxFiles::exists(const std::string& path) {
  std::error_code error;
  return fs::exists(path, error);
}

std::optional<std::string> LinuxFiles::copy(const std::string& from, const std::string& to) {
  std::error_code error;
  fs::copy_file(from, to, error);
  return reason(error);
}

std::optional<std::string> LinuxFiles::makeDirectories(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  return reason(error);
}

std::optional<std::string> LinuxFiles::documentsDirectory() {
  return kestro::documentsDirectory().string();
}

}  // namespace kestro
