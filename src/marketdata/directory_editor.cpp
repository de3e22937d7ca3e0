#include "marketdata/directory_editor.h"

#include <memory>
#include <system_error>

#include "base/paths.h"
#include "marketdata/directory_lock.h"
#include "marketdata/index_entries.h"
#include "marketdata/metalib_error.h"
#include "marketdata/new_security.h"
#include "marketdata/security_storage.h"
#include "marketdata/series_error.h"

namespace velumar {

namespace {

// A directory that was missing; it goes again, unless Keep is called.
class CreatedDirectory {
 public:
  explicit CreatedDirectory(const std::filesystem::path& path) : path_(path) {
    std::error_code error;
    made_ = std::filesystem::create_directories(path_, error);
    if (error) {
      throw MetaLibError(MetaLibError::kWriteFailed, "The folder \"" + PathText(path_) +
                                                         "\" can't be made: " + error.message());
    }
  }
  ~CreatedDirectory() {
    std::error_code ignored;
    if (made_) std::filesystem::remove_all(path_, ignored);
  }
  CreatedDirectory(const CreatedDirectory&) = delete;
  CreatedDirectory& operator=(const CreatedDirectory&) = delete;

  void Keep() { made_ = false; }

 private:
  std::filesystem::path path_;
  bool made_ = false;
};

std::shared_ptr<DirectoryIndex> LoadOrStart(IndexCache::Entries& cache,
                                            std::string_view directory) {
  try {
    return cache.Load(directory);
  } catch (const MetaLibError& error) {
    if (error.Number() != MetaLibError::kNoData) throw;
  }
  const std::filesystem::path path = NativePath(directory);
  return std::make_shared<DirectoryIndex>(path, DirectoryListing::Read(path));
}

}  // namespace

void StoreSecurity(std::string_view directory, const NewSecurity& security,
                   const std::vector<Bar>& bars, IndexCache& cache) {
  CheckIdentity(security);
  CheckBars(security, bars, directory);
  const std::filesystem::path path = NativePath(directory);
  CreatedDirectory made(path);
  const auto lock = DirectoryLock::TryHold(path);
  if (!lock) ThrowInUse(path);
  const auto index = LoadOrStart(cache.Kept(), directory);
  SecurityStorage(*index, security).Store(bars);
  made.Keep();
}

}  // namespace velumar
