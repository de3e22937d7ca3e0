#pragma once

#include <string>
#include <vector>

#include "resultchart/page_flow.h"

namespace velumar {

// A trade of the journal on paper.
struct JournalItem {
  std::string title;
  std::vector<std::string> lines;     // wrapped where they are too long for the page
  std::vector<std::string> pictures;  // files; what can't be read is left out
};

// A title, the lines, and the pictures side by side, on a page of this width.
PageGroup JournalGroup(const JournalItem& item, double width);

}  // namespace velumar
