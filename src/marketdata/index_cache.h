#pragma once

#include <memory>

namespace velumar {

// What was read of the index files of the directories in use, kept between the short-lived readers
// and writers. An entry holds as long as inode, size and time of the files do. main builds one and
// hands it on.
class IndexCache {
 public:
  IndexCache();
  ~IndexCache();
  IndexCache(const IndexCache&) = delete;
  IndexCache& operator=(const IndexCache&) = delete;

  struct Entries;
  Entries& Kept() { return *entries_; }  // for this folder only

 private:
  std::unique_ptr<Entries> entries_;
};

}  // namespace velumar
