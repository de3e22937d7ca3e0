#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "marketdata/directory_index.h"
#include "marketdata/index_cache.h"

namespace velumar {

// What stands in an IndexCache.
struct IndexCache::Entries {
 public:
  // The index of a directory, read anew as far as files have changed since it was kept. Throws
  // MetaLibError: kNoData where there is no directory or no index file in it.
  std::shared_ptr<DirectoryIndex> Load(std::string_view directory);

  // An index file of `index` was changed by ourselves, from the stamp `before`, in a way that
  // `index` already tells: it need not be read again.
  void NoteOwnChange(const DirectoryIndex& index, IndexKind kind, const FileStamp& before,
                     const FileStamp& after);

 private:
  // Unset: nothing that could be trusted without another look.
  using KeptStamp = std::optional<FileStamp>;

  struct Entry {
    std::shared_ptr<DirectoryIndex> index;
    KeptStamp directory;
    std::array<KeptStamp, kIndexKinds.size()> files;
  };

  Entry& EntryOf(const std::filesystem::path& directory);

  std::vector<Entry> entries_;
};

}  // namespace velumar
