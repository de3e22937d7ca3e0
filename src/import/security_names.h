#pragma once

#include <filesystem>
#include <string>

#include "import/file_name.h"
#include "import/price_import.h"

namespace velumar {

// What the securities of a price file are called: as the options say, else as the rows or the name
// of the file do.
class SecurityNames {
 public:
  // `options` must outlive the object.
  SecurityNames(const std::filesystem::path& file, const ImportOptions& options);

  // By the name of the file.
  const NameGuess& Guess() const { return guess_; }
  // `ticker` is that of the rows, empty without one; `hint_holds` as in BuiltSeries.
  std::string SymbolOf(const std::string& ticker, bool hint_holds) const;
  // Empty for that of the stored series or the symbol.
  std::string NameOf(const std::string& symbol) const;
  // Of a part of a series that is split, with the year in its symbol.
  std::string NameOfYear(const std::string& symbol, const std::string& year) const;

  // If a name is cut when it is stored, says so; else empty. A name that ends with the scale is not
  // cut but refused then. Throws MetaLibError if the name can't be stored at all.
  std::string CutRemark(const std::string& name) const;
  // Asks for the symbol where the name of the file is none, and may offer its first word.
  ImportQuestion SymbolQuestion(const std::string& symbol) const;

 private:
  const ImportOptions& options_;
  NameGuess guess_;
};

// Why the symbol can't be stored; empty if it can.
std::string SymbolProblem(const std::string& symbol);

// The prices of a series that was imported with a scale say so in its name: "EURUSD x10000".
struct ScaledName {
  std::string base;
  int scale = 1;
};
ScaledName ScaledNameOf(const std::string& name);
// The end of such a name: " x10000"; empty for 1.
std::string ScaleSuffix(int scale);

}  // namespace velumar
