#include "linux/storage/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace kestro {
namespace {

constexpr off_t largestFile = 16 << 20;

// A file descriptor that is closed when it goes.
class File {
 public:
  explicit File(int descriptor) : descriptor_(descriptor) {}
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return fsync(descriptor) == 0;
}

// Without it the old name may stand again after a loss of power.
bool syncDirectory(const std::filesystem::path& directory) {
  const File file(open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_CLOEXEC));
  // Some file systems cannot sync a directory.
  return file.get() >= 0 && (fsync(file.get()) == 0 || errno == EINVAL);
}

}  // namespace

std::optional<std::string> readWholeFile(const std::filesystem::path& path) {
  const File file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode) || status.st_size > largestFile) return std::nullopt;
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t filled = 0;
  while (filled < text.size()) {
    const ssize_t count = read(file.get(), text.data() + filled, text.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  text.resize(filled);
  return text;
}

bool replaceFile(const std::filesystem::path& path, std::string_view text) {
  if (text.empty()) return false;
  std::string temporary = path.string() + ".XXXXXX";
  const File file(mkostemp(temporary.data(), O_CLOEXEC));  // readable by the owner alone
  if (file.get() < 0) return false;
  if (writeAll(file.get(), text) && rename(temporary.c_str(), path.c_str()) == 0) {
    return syncDirectory(path.parent_path());
  }
  unlink(temporary.c_str());
  return false;
}

}  // namespace kestro
