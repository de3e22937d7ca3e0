#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "charthost/drawings/drawing_file.h"
#include "charthost/drawings/drawing_list.h"

namespace velumar {

// The drawings of all securities that charts show, kept in the user's file. Charts of one security
// share its list.
class DrawingBook {
 public:
  explicit DrawingBook(std::filesystem::path file) : file_(std::move(file)) {}

  // The list of a security, read at the first call. It stays valid. If the file can't be read, the
  // list is empty, and Problem says why.
  DrawingList& Of(const SecurityKey& security);
  // Call after a list has changed. What a file that was repaired since holds of the security joins
  // the list.
  void Save(const SecurityKey& security);
  // What failed last, as a sentence; empty once something has been saved.
  const std::string& Problem() const { return problem_; }

 private:
  std::vector<Drawing> Load(const SecurityKey& security) const;

  std::filesystem::path file_;
  std::map<SecurityKey, DrawingList> lists_;
  std::set<SecurityKey> unread_;  // the file could not be read
  std::string problem_;
};

}  // namespace velumar
