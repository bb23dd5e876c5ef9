// An exclusive lock between processes, held as long as the object lives, also when the process is
// killed. Owned by the database wrapper.
#pragma once

#include <filesystem>

namespace kestro {

class FileLock {
 public:
  // Makes the file, readable by its owner alone, when there is none. Throws std::exception when
  // another process holds the lock, or when the file cannot be opened.
  explicit FileLock(const std::filesystem::path& file);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  int descriptor_;
};

}  // namespace kestro
