// Preferences as XML property lists below $XDG_CONFIG_HOME/kestro: the standard domain and the
// product's two stores there, other applications' domains in `suites`. A file is read again when it
// has changed. One that is no property list counts as empty, and is set aside when it is first
// read; one that cannot be read counts as empty and is not written.
// Main thread only.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

namespace kestro {

class PlistUserDefaults final : public UserDefaults {
 public:
  PlistUserDefaults(std::filesystem::path path, SystemLog& log)
      : path_(std::move(path)), log_(log) {}

  std::optional<PropertyList> value(std::string_view key) const override;
  // Each change is on the disk when the call returns; a change that cannot be written is logged and
  // kept in memory only until the file changes.
  void set(std::string_view key, PropertyList value) override;
  void remove(std::string_view key) override;
  void synchronize() override {}

 private:
  // What tells one state of the file from another.
  struct Stamp {
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modified = 0;  // nanoseconds
    bool operator==(const Stamp&) const = default;
  };

  Stamp stamp() const;
  void refresh() const;
  void write();
  void setAside() const;

  std::filesystem::path path_;
  SystemLog& log_;
  mutable PropertyListDictionary values_;
  mutable std::optional<Stamp> read_;
  mutable bool isMalformed_ = false;   // and could not be set aside
  mutable bool isUnreadable_ = false;  // there, but not to be read now; never written over
};

class PlistUserDefaultsDatabase final : public UserDefaultsDatabase {
 public:
  PlistUserDefaultsDatabase(std::filesystem::path directory, SystemLog& log);

  UserDefaults& standard() override { return standard_; }
  // Null for a name that is empty, too long for a file name, begins with a dot or holds a slash or
  // a control character.
  UserDefaults* suite(std::string_view name) override;
  UserDefaults& product(ProductStore store) override;

 private:
  std::filesystem::path directory_;
  SystemLog& log_;
  PlistUserDefaults standard_;
  PlistUserDefaults helperPreferences_;
  PlistUserDefaults mainAppPreferences_;
  std::map<std::string, std::unique_ptr<PlistUserDefaults>, std::less<>> suites_;
};

}  // namespace kestro
