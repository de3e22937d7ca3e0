#pragma once

#include <filesystem>

namespace velumar {

// The picture of the chart that a journal keeps for an order: for the order at place 34 of run 12
// in "Portfolio.mdb" the file "Journal/Portfolio-12-34.png" next to it. The numbers follow from the
// ledger alone, so no name gives a security away.
std::filesystem::path JournalPicture(const std::filesystem::path& ledger, int run, int place);

// True for a path of that form in a folder that exists. The folder "Journal" in it may be missing,
// but may not be a link.
bool IsJournalPicture(const std::filesystem::path& file);

}  // namespace velumar
