#include "import/price_import.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <utility>

#include "base/number_text.h"
#include "base/paths.h"
#include "base/raw_file.h"
#include "base/text.h"
#include "import/file_reading.h"
#include "import/import_memory.h"
#include "import/security_names.h"
#include "marketdata/directory_editor.h"
#include "marketdata/directory_lock.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

// Much longer than storing the series of a file takes.
constexpr std::chrono::seconds kPatience(10);

struct StoredSeries {
  std::string name;
  std::vector<Bar> bars = {};
};

std::vector<Bar> BarsOf(const BarArrays& arrays) {
  std::vector<Bar> bars(arrays.dates.size());
  for (std::size_t i = 0; i < bars.size(); ++i) {
    bars[i] = {.date = arrays.dates[i],
               .time = arrays.times[i],
               .open = arrays.opens[i],
               .high = arrays.highs[i],
               .low = arrays.lows[i],
               .close = arrays.closes[i],
               .volume = arrays.volumes[i],
               .open_interest = arrays.open_interests[i]};
  }
  return bars;
}

// Nothing if the directory, its index or the series is missing.
std::optional<StoredSeries> ReadStored(std::string_view directory, const FoundSeries& wanted,
                                       IndexCache& cache) {
  MetaLibReader reader(cache);
  try {
    reader.OpenDirectory(directory);
  } catch (const MetaLibError& error) {
    if (error.Number() == MetaLibError::kNoData) return std::nullopt;
    throw;
  }
  while (reader.NextSecurity() >= 1) {
    reader.ReadSecurityHeader();
    if (reader.SecuritySymbol() != wanted.symbol || reader.SecurityInterval() != wanted.interval) {
      continue;
    }
    StoredSeries stored{.name = reader.SecurityName()};
    reader.SelectSeries(wanted.symbol, wanted.interval == kDaily ? 1 : 0, wanted.interval);
    reader.ReadSeries();
    stored.bars = BarsOf(reader.Bars());
    return stored;
  }
  return std::nullopt;
}

// Adds stored bars to those of the file, both oldest first. Of equal moments the file's bar counts,
// unless the file begins within it: an earlier file knew all of it.
std::vector<Bar> Merged(const std::vector<Bar>& stored, const ReadPrices::Series& read,
                        ImportedSeries& result) {
  std::vector<Bar> fresh = read.bars;
  const auto key = [](const Bar& bar) { return TimestampKey(bar.date, bar.time); };
  if (read.begins_within_bar && !stored.empty() && key(stored.front()) < key(fresh.front())) {
    const auto whole = std::ranges::lower_bound(stored, key(fresh.front()), {}, key);
    if (whole != stored.end() && key(*whole) == key(fresh.front())) fresh.front() = *whole;
  }
  std::vector<Bar> merged;
  merged.reserve(stored.size() + fresh.size());
  auto old = stored.begin();
  for (const Bar& bar : fresh) {
    for (; old != stored.end() && key(*old) < key(bar); ++old) {
      if (key(*old) > key(fresh.front())) ++result.kept;
      merged.push_back(*old);
    }
    const bool known = old != stored.end() && key(*old) == key(bar);
    result.added += known ? 0 : 1;
    result.changed += known && *old != bar ? 1 : 0;
    if (known) ++old;
    merged.push_back(bar);
  }
  merged.insert(merged.end(), old, stored.end());
  return merged;
}

void RequireSameScale(int stored, int wanted) {
  if (stored == wanted) return;
  throw ImportError("the stored prices are " +
                    (stored == 1 ? "not multiplied; leave out --scale"
                                 : "multiplied; set --scale " + std::to_string(stored)) +
                    ", or set --replace to start over");
}

void KeepPlayable(std::vector<Bar>& bars, TooLong too_long) {
  if (bars.size() <= kLongestSeries) return;
  if (too_long != TooLong::kKeepLast) {
    throw ImportUndecided(QuestionText(
        {.text = "With the stored bars, the series has " +
                 GroupedNumber(std::to_string(bars.size())) + " bars; a run can play " +
                 GroupedNumber(std::to_string(kLongestSeries)) + ".",
         .option = "--last to keep the newest ones, or --replace to start over"}));
  }
  bars.erase(bars.begin(), bars.end() - kLongestSeries);
}

// Writes nothing if the stored series already is as it would become.
void Store(HeldDirectory& directory, const ReadPrices::Series& series, const ImportOptions& options,
           IndexCache& cache, ImportedSeries& result) {
  NewSecurity security{
      .symbol = series.found.symbol, .name = series.found.name, .interval = series.found.interval};
  const std::optional<StoredSeries> stored = ReadStored(directory.Name(), series.found, cache);
  const ScaledName name = ScaledNameOf(stored ? stored->name : "");
  if (stored && !options.name) security.name = name.base + ScaleSuffix(options.scale);
  if (options.scale != 1 && NameAsStored(security.name) != Trimmed(security.name)) {
    throw ImportError("the name \"" + security.name +
                      "\" is too long to end with the scale; set a shorter --name");
  }
  if (!stored || options.replace) {
    directory.Store(security, series.bars, cache);
    result.added = static_cast<std::int64_t>(series.bars.size());
    result.replaced = true;
    return;
  }
  RequireSameScale(name.scale, options.scale);
  std::vector<Bar> bars = Merged(stored->bars, series, result);
  KeepPlayable(bars, options.too_long);
  if (bars == stored->bars && security.name == stored->name) return;
  directory.Store(security, std::move(bars), cache);
}

ImportedSeries Imported(HeldDirectory& directory, const ReadPrices::Series& series,
                        const ImportOptions& options, IndexCache& cache) {
  ImportedSeries result{.found = series.found, .error = series.found.refusal};
  if (!result.error.empty()) return result;
  try {
    Store(directory, series, options, cache, result);
  } catch (const std::exception& error) {
    result.error = error.what();
    result.undecided = dynamic_cast<const ImportUndecided*>(&error) != nullptr;
  }
  return result;
}

// A run empties its working store, and what it held would be lost.
void RequireNoStore(std::string_view directory) {
  const fs::path path = NativePath(directory);
  std::error_code missing;
  if (!fs::exists(path / kWorkingStoreMark, missing)) return;
  throw ImportError("\"" + PathText(path) +
                    "\" is a working store, which each run empties; choose another directory");
}

void RequireReady(const Understanding& understood, const std::string& name) {
  if (!understood.refusal.empty()) throw ImportError(name + understood.refusal);
  if (understood.questions.empty()) return;
  std::string text;
  for (const ImportQuestion& question : understood.questions) {
    text += (text.empty() ? "" : " ") + QuestionText(question);
  }
  throw ImportUndecided(name + text);
}

// Throws the first question, else the first error.
void RequireOneStored(const ImportReport& report) {
  const auto question = std::ranges::find(report.series, true, &ImportedSeries::undecided);
  const bool stored =
      std::ranges::any_of(report.series, &std::string::empty, &ImportedSeries::error);
  if (stored) return;
  if (question != report.series.end()) throw ImportUndecided(question->error);
  throw ImportError(report.series.front().error);
}

}  // namespace

std::string QuestionText(const ImportQuestion& question) {
  return question.text + " Set " + question.option + ".";
}

Understanding UnderstandFile(const fs::path& file, const ImportOptions& options,
                             const ImportProgress& progress) {
  return ReadPriceFile(file, options, progress).understanding;
}

ImportReport ImportFile(const fs::path& file, std::string_view directory,
                        const ImportOptions& options, IndexCache& cache,
                        const ImportProgress& progress) {
  RequireNoStore(directory);
  const std::string name = PathText(file) + ": ";
  // Before it is read, so that a later change is noticed.
  const std::optional<FileStamp> stamp = StampOf(file);
  ReadPrices read = ReadPriceFile(file, options, progress);
  RequireReady(read.understanding, name);
  ImportReport report{.remarks = std::move(read.understanding.remarks),
                      .suggested_scale = read.understanding.suggested_scale};
  try {
    // Until the file is remembered: an import at the same time would undo what this one changes.
    HeldDirectory held(directory, kPatience);
    for (const ReadPrices::Series& series : read.series) {
      report.series.push_back(Imported(held, series, options, cache));
    }
    const bool open = std::ranges::any_of(report.series, &ImportedSeries::undecided);
    RequireOneStored(report);
    if (stamp && !open && options.remember != Remember::kNothing) {
      const std::string problem = RememberImport(directory, file, *stamp, options);
      if (!problem.empty()) report.remarks.push_back(problem);
    }
  } catch (const ImportUndecided& error) {
    throw ImportUndecided(name + error.what());
  } catch (const std::exception& error) {
    throw ImportError(name + error.what());
  }
  return report;
}

bool IsPriceFile(const fs::path& file) {
  static const std::array<std::string, 6> kExtensions = {".CSV", ".TXT", ".TSV",
                                                         ".PRN", ".ZIP", ".GZ"};
  return std::ranges::find(kExtensions, UpperCased(PathText(file.extension()))) !=
         kExtensions.end();
}

std::vector<fs::path> PriceFilesIn(const std::vector<fs::path>& paths) {
  std::vector<fs::path> files;
  for (const fs::path& path : paths) {
    std::error_code error;
    if (!fs::is_directory(path, error)) {
      files.push_back(path);
      continue;
    }
    fs::directory_iterator at(path, error);
    for (; !error && at != fs::directory_iterator(); at.increment(error)) {
      std::error_code unreadable;
      const bool hidden = PathText(at->path().filename()).starts_with('.');
      if (!hidden && IsPriceFile(at->path()) && at->is_regular_file(unreadable)) {
        files.push_back(at->path());
      }
    }
    if (error) throw ImportError(PathText(path) + " can't be read: " + error.message());
  }
  std::ranges::sort(files);
  files.erase(std::unique(files.begin(), files.end()), files.end());
  return files;
}

}  // namespace velumar
