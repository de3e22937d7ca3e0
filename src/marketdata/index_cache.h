#pragma once

#include <memory>

namespace velumar {

// Keeps the index files of the directories in use between the short-lived readers and writers, each
// as long as the file's inode, size and time stay the same. main creates one and passes it on.
class IndexCache {
 public:
  IndexCache();
  ~IndexCache();
  IndexCache(const IndexCache&) = delete;
  IndexCache& operator=(const IndexCache&) = delete;

  class Entries;
  Entries& Contents() { return *entries_; }  // only for this folder

 private:
  std::unique_ptr<Entries> entries_;
};

}  // namespace velumar
