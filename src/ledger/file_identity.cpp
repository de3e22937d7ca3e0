#include "ledger/file_identity.h"

#include <filesystem>

#include "base/paths.h"

namespace velumar {

namespace fs = std::filesystem;

std::string CanonicalPath(const std::string& path) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  fs::path file = fs::absolute(fs::path(std::u8string(path.begin(), path.end())), error);
  // By hand, since a link may lead to a file that has yet to be made.
  for (int links = 0; links < kMostLinks && fs::is_symlink(file, error); ++links) {
    file = file.parent_path() / fs::read_symlink(file, error);
  }
  const fs::path folder = fs::canonical(file.parent_path(), error);
  return PathText(error ? file : folder / file.filename());
}

}  // namespace velumar
