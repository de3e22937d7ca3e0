#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "marketdata/directory_index.h"

namespace velumar {

// Keeps the index files of the directories in use between the short-lived readers and writers, each
// as long as the file's inode, size and time stay the same. main creates one and passes it on; only
// this folder calls its methods.
class IndexCache {
 public:
  IndexCache() = default;
  IndexCache(const IndexCache&) = delete;
  IndexCache& operator=(const IndexCache&) = delete;

  // The index of a directory; files that changed since the last call are read again. Throws
  // MetaLibError: kNoData if there is no directory or no index file in it.
  std::shared_ptr<DirectoryIndex> Load(std::string_view directory);

  // Changes the records of `security` in all index files that list it, so that `index` need not be
  // read again. `change` gets the bytes of one record; only what it changes is written. A record
  // that another program has given to another security stays as it is.
  void UpdateRecords(const DirectoryIndex& index, const IndexedSecurity& security,
                     const std::function<void(IndexKind, ByteSpan)>& change);

 private:
  // Unset if the file must be read again.
  using KeptStamp = std::optional<FileStamp>;

  struct Entry {
    std::shared_ptr<DirectoryIndex> index;
    KeptStamp directory;
    std::array<KeptStamp, kIndexKinds.size()> files;
  };

  Entry& EntryOf(const std::filesystem::path& directory);
  void NoteOwnChange(const DirectoryIndex& index, IndexKind kind, const FileStamp& before,
                     const FileStamp& after);

  std::vector<Entry> entries_;
};

}  // namespace velumar
