#include "product/embedded/FileLock.h"

// The system's headers, because SQLite's own locks last for one transaction and the C++ library has
// none: only the system frees a lock when its process is killed.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace kestro {

FileLock::FileLock(const std::filesystem::path& file)
    : descriptor_(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR)) {
  if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "its lock");
  if (flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  const int error = errno;
  close(descriptor_);
  if (error == EWOULDBLOCK) throw std::runtime_error("another process is writing it");
  throw std::system_error(error, std::generic_category(), "its lock");
}

FileLock::~FileLock() {
  close(descriptor_);
}

}  // namespace kestro
