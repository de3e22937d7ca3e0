#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ledger/trades.h"
#include "progress/number_picture.h"
#include "progress/summary.h"

namespace velumar {

// What a coach reads who doesn't have the program: figures, pictures, setups and trades of a
// selection, with what they mean. It says what there is; resultchart draws it.

struct CoachTable {
  struct Column {
    std::string title;
    bool numeric = false;
  };
  std::string title;
  std::string note;             // below the title
  std::vector<Column> columns;  // a last one of texts takes the room left
  std::vector<std::vector<std::string>> rows;
};

struct CoachPicture {
  NumberPicture picture;
  std::string_view hint;  // how to read it
  bool wide = false;      // across the page
};

struct CoachTrade {
  std::string title;
  std::vector<std::string> lines;  // may have line breaks
  // Files of the chart; empty if there is none.
  std::string entry_picture;
  std::string exit_picture;
};

struct CoachTrades {
  std::string title;
  std::string note;
  std::vector<CoachTrade> trades;
};

struct CoachTerm {
  std::string_view name;
  std::string_view meaning;
};

struct CoachReport {
  std::string title;
  std::string subtitle;
  std::vector<std::pair<std::string, std::string>> facts;  // name and value
  std::vector<std::string> findings;
  std::vector<CoachTable> figures;     // one, or none without trades
  std::vector<CoachPicture> pictures;  // those that have something to show
  std::vector<CoachTable> tables;      // one for each subject, such as the setups
  std::vector<CoachTrades> trades;     // the best, the worst
  std::span<const CoachTerm> terms;
};

// What the trades were selected from, and how.
struct CoachSource {
  const Played& played;
  const std::vector<PlayedScope>& scopes;  // that `played` was made of
  const TradeFilter& filter;
};

// The plans, notes and pictures of the best and worst trades are read from the ledger. As there,
// blind sessions that are not revealed stay masked. The size of the report is bounded, however many
// trades, setups and words it is about. Throws LedgerError.
CoachReport MakeCoachReport(LedgerConnection& connection, const CoachSource& source,
                            const ProgressSummary& summary);

}  // namespace velumar
