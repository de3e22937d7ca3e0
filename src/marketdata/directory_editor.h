#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar.h"
#include "marketdata/directory_lock.h"
#include "marketdata/metalib_error.h"
#include "marketdata/new_security.h"

namespace velumar {

class IndexCache;

struct NewSeries {
  NewSecurity security;
  std::vector<Bar> bars;
};

// A market data directory that no other writer can change while this object exists, so that what is
// read from it can be changed and stored again. Readers ignore that.
class HeldDirectory {
 public:
  // Creates a missing directory. Waits up to `patience` for another writer, then throws
  // MetaLibError (kDirectoryInUse).
  explicit HeldDirectory(std::string_view directory, std::chrono::milliseconds patience = {});
  // Deletes a directory that it created, if nothing was stored there.
  ~HeldDirectory();
  HeldDirectory(const HeldDirectory&) = delete;
  HeldDirectory& operator=(const HeldDirectory&) = delete;

  const std::string& Name() const { return directory_; }
  // Stores each as StoreSecurity does, but changes the index files together, since flushing them
  // for every security takes most of the time of many small ones. Returns for each what it would
  // throw. Each symbol and interval may occur once.
  std::vector<std::optional<MetaLibError>> Store(std::vector<NewSeries> all, IndexCache& cache);

 private:
  using Problems = std::vector<std::optional<MetaLibError>>;

  std::size_t StoreSome(std::vector<NewSeries>& all, std::size_t first, IndexCache& cache,
                        Problems& problems);

  std::string directory_;
  std::filesystem::path path_;
  bool is_new_;  // and nothing was stored
  std::optional<DirectoryLock> lock_;
};

// Adds the security with its bars, or replaces the one of the same symbol and interval, completely
// or not at all: if it fails, throws MetaLibError and leaves the directory as it was. Creates a
// missing directory or index, and sorts the bars, keeping the last of equal timestamps. A daily
// series gets seven fields, an intraday one eight; a stored series of fewer fields is widened. All
// values of every bar read back as the same 32-bit floats; otherwise the bar that cannot be stored
// is named and nothing is written. Everything is on the disk on return.
void StoreSecurity(std::string_view directory, const NewSecurity& security,
                   const std::vector<Bar>& bars, IndexCache& cache);

}  // namespace velumar
