#pragma once

#include <filesystem>

namespace velumar {

// Copies MASTER, EMASTER and XMASTER, in whatever letter case they are named, without the first and
// last dates of any series. The copies list the securities of `from` and nothing of how far their
// bars go; the dates never reach the disk of `to`. Missing index files are skipped. Throws
// MetaLibError if `from` can't be listed, a file can't be read or written, or a link is in the way.
void CopyIndexFiles(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace velumar
