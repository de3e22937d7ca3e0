#pragma once

#include <filesystem>

namespace velumar {

// Copies MASTER, EMASTER and XMASTER, in any letter case, without the dates of the series: they are
// removed before anything is written, so a store never says how far its series go. Missing index
// files are skipped. Throws MetaLibError if `from` can't be listed, a file can't be read or
// written, or a link has the name of a copy.
void CopyIndexFiles(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace velumar
