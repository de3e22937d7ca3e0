#include "app/services/printers.h"

#include <QPrinter>
#include <QPrinterInfo>
#include <stdexcept>

#include "charts/qt_text.h"
#include "resultchart/report.h"

namespace velumar {

namespace {

constexpr int kMedium = -3;

int DotsPerInch(int quality) {
  if (quality > kMedium) return 150;
  return quality == kMedium ? 300 : 600;
}

}  // namespace

void PrintOnPaper(int quality, const std::function<void(QPagedPaintDevice& device)>& print) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setFullPage(true);
  printer.setResolution(DotsPerInch(quality));
  const auto fail = [&printer](const std::string& why) {
    const std::string name = printer.printerName().toStdString();
    throw std::runtime_error("The printer " + (name.empty() ? name : name + " ") + why);
  };
  if (!printer.isValid()) fail("can't be used.");
  try {
    print(printer);
  } catch (const std::runtime_error& error) {
    fail(std::string("failed: ") + error.what() + ".");
  }
  if (printer.printerState() == QPrinter::Error) fail("reports an error.");
}

bool QtPrinters::Any() const { return !QPrinterInfo::availablePrinterNames().isEmpty(); }

void QtPrinters::PrintReport(int run, const std::string& pdf_file) {
  const Report report = ReadReport(ledger_, run);
  if (pdf_file.empty()) {
    PrintOnPaper(kMedium, [&](QPagedPaintDevice& device) { velumar::PrintReport(report, device); });
  } else {
    SaveReport(report, ToQt(pdf_file));
  }
}

}  // namespace velumar
