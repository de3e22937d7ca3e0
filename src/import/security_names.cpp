#include "import/security_names.h"

#include "base/number_text.h"
#include "base/paths.h"
#include "base/text.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/new_security.h"

namespace velumar {

namespace {

// "AAPL_D" of "AAPL_D.csv" and "AAPL_D.csv.gz".
std::string StemOf(const std::filesystem::path& file) {
  const std::filesystem::path stem = file.stem();
  return PathText(IsPriceFile(stem) ? stem.stem() : stem);
}

}  // namespace

SecurityNames::SecurityNames(const std::filesystem::path& file, const ImportOptions& options)
    : options_(options), guess_(GuessFromName(StemOf(file))) {}

std::string SecurityNames::SymbolOf(const std::string& ticker, bool hint_holds) const {
  if (options_.symbol) return NormalisedSymbol(*options_.symbol);
  if (!ticker.empty()) return ticker;
  return hint_holds ? guess_.symbol : guess_.whole;
}

std::string SecurityNames::NameOf(const std::string& symbol) const {
  if (options_.scale == 1) return options_.name.value_or("");
  return options_.name.value_or(symbol) + ScaleSuffix(options_.scale);
}

std::string SecurityNames::NameOfYear(const std::string& symbol, const std::string& year) const {
  if (!options_.name) return NameOf(symbol);
  return *options_.name + " " + year + ScaleSuffix(options_.scale);
}

std::string SecurityNames::CutRemark(const std::string& name) const {
  if (options_.scale != 1) return "";
  const std::string stored = NameAsStored(name);
  if (stored == Trimmed(name)) return "";
  return "the name is cut to \"" + stored + "\", since a directory holds " +
         std::to_string(kLongestSecurityName) + " characters of it";
}

ImportQuestion SecurityNames::SymbolQuestion(const std::string& symbol) const {
  ImportQuestion question{.text = "The file name does not give a symbol of at most 14 characters.",
                          .option = "--symbol TEXT"};
  const std::string word = symbol.substr(0, symbol.find_first_of("_- ,."));
  if (SymbolProblem(word).empty()) {
    question.Add(word, "", options_).symbol = word;
  }
  return question;
}

std::string SymbolProblem(const std::string& symbol) {
  try {
    RequireStorable({.symbol = symbol, .name = "", .interval = kDaily});
    return "";
  } catch (const MetaLibError& error) {
    return error.what();
  }
}

ScaledName ScaledNameOf(const std::string& name) {
  const auto sign = name.rfind(" x");
  if (sign == std::string::npos) return {name, 1};
  const int scale = ExactNumber<int>(std::string_view(name).substr(sign + 2)).value_or(1);
  if (scale == 1 || !IsScale(scale)) return {name, 1};
  return {name.substr(0, sign), scale};
}

std::string ScaleSuffix(int scale) { return scale == 1 ? "" : " x" + std::to_string(scale); }

}  // namespace velumar
