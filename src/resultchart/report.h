#pragma once

#include <QString>
#include <string>
#include <vector>

#include "ledger/ledger.h"
#include "resultchart/chart_scene.h"
#include "resultchart/journal_pages.h"
#include "results/order_list.h"

class QPagedPaintDevice;

namespace velumar {

// A run or session on paper.
struct Report {
  struct Line {
    std::string name;
    std::string value;
  };

  std::string what;      // "run" or "session"
  std::string title;     // "ABC, daily bars"
  std::string subtitle;  // where the prices come from
  std::vector<Line> facts;
  std::vector<Line> figures;
  std::vector<Line> statistics;
  ChartPoints points;
  // Of the session, and of the trades with a plan, a note or a picture.
  std::vector<JournalItem> journal;
  std::vector<OrderListRow> orders;
};

// Throws LedgerError.
ChartPoints ReadPoints(LedgerConnection& connection, LedgerScope scope);

// Throws LedgerError.
Report ReadReport(LedgerConnection& connection, LedgerScope scope);

// Draws the report as vectors: an A4 page with facts, figures, statistics and chart, the
// journal, then the orders on as many landscape pages as they need. Their fourteen columns don't
// fit upright; the type shrinks, to six units of 1/96 inch at least, until the longest text of each
// column fits. Throws std::runtime_error if a page can't be started.
void PrintReport(const Report& report, QPagedPaintDevice& device);

// Saves the report as a PDF file; see SaveWhole. Throws std::runtime_error with the file's name.
void SaveReport(const Report& report, const QString& file);

}  // namespace velumar
