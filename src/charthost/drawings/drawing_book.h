#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

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
  // Call after a list has changed. What another program has changed in the file since, or a
  // repair brought back, joins the list.
  void Save(const SecurityKey& security);
  // What failed last, as a sentence; empty once something has been saved.
  const std::string& Problem() const { return problem_; }

 private:
  struct Kept {
    DrawingList list;
    std::vector<Drawing> in_file;  // as last read or written
  };

  Kept& KeptOf(const SecurityKey& security);

  std::filesystem::path file_;
  std::map<SecurityKey, Kept> kept_;
  std::string problem_;
};

}  // namespace velumar
