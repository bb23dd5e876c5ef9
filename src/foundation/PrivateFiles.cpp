#include "foundation/PrivateFiles.h"

// The system's headers, because the C++ library makes files and folders with the mask's mode first.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <system_error>

namespace kestro {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const char* what, const fs::path& path) {
  throw fs::filesystem_error(what, path, std::error_code(errno, std::generic_category()));
}

}  // namespace

void makePrivateFolder(const fs::path& folder) {
  if (folder.empty() || fs::exists(folder)) return;
  makePrivateFolder(folder.parent_path());
  if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) fail("cannot make", folder);
}

bool closeFolder(const fs::path& folder) {
  constexpr auto ofOthers = fs::perms::group_all | fs::perms::others_all;
  const fs::perms now = fs::status(folder).permissions();
  if ((now & ofOthers) == fs::perms::none) return true;
  if ((now & fs::perms::sticky_bit) != fs::perms::none) return false;
  std::error_code error;
  fs::permissions(folder, fs::perms::owner_all, error);
  return !error;
}

void createPrivateFile(const fs::path& file) {
  const int descriptor =
      open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor < 0) fail("cannot make", file);
  close(descriptor);
}

void writePrivateFile(const fs::path& file, const std::string& text) {
  createPrivateFile(file);
  if (!(std::ofstream(file) << text << std::flush)) {
    throw fs::filesystem_error("cannot write", file, std::make_error_code(std::errc::io_error));
  }
}

bool isWritable(const fs::path& file) {
  return access(file.c_str(), W_OK) == 0;
}

std::optional<FileIdentity> identityOf(const fs::path& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace kestro
