#include "forms/combo_search.h"

#include <string>

#include "base/text.h"

namespace velumar {

namespace {

bool HasWordThatBeginsWith(std::string_view note, std::string_view wanted) {
  for (std::size_t at = note.find(wanted); at != std::string_view::npos;
       at = note.find(wanted, at + 1)) {
    if (at == 0 || note[at - 1] == ' ') return true;
  }
  return false;
}

}  // namespace

std::vector<int> MatchingRows(const std::vector<ComboBox::Row>& rows, std::string_view typed) {
  const std::string wanted = NormalisedSymbol(typed);
  std::vector<int> matches;
  if (wanted.empty()) return matches;
  std::vector<int> by_note;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto row = static_cast<int>(i);
    if (UpperCased(rows[i].text).starts_with(wanted)) {
      matches.push_back(row);
    } else if (HasWordThatBeginsWith(UpperCased(rows[i].note), wanted)) {
      by_note.push_back(row);
    }
  }
  matches.insert(matches.end(), by_note.begin(), by_note.end());
  return matches;
}

}  // namespace velumar
