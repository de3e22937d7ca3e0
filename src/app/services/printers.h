#pragma once

#include <functional>

#include "ledger/ledger.h"
#include "platform/services.h"

class QPagedPaintDevice;

namespace velumar {

// Prints what `print` draws on the default printer. The quality is -2 (low), -3 or -4 (high).
// Throws std::runtime_error with the name of the printer and the reason, as far as it is known.
void PrintOnPaper(int quality, const std::function<void(QPagedPaintDevice& device)>& print);

class QtPrinters : public Printers {
 public:
  explicit QtPrinters(LedgerConnection& ledger) : ledger_(ledger) {}
  bool Any() const override;
  void PrintReport(int run, const std::string& pdf_file) override;

 private:
  LedgerConnection& ledger_;
};

}  // namespace velumar
