#include "import/price_import.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <utility>

#include "base/paths.h"
#include "base/raw_file.h"
#include "base/text.h"
#include "import/file_reading.h"
#include "import/import_memory.h"
#include "import/series_merge.h"
#include "marketdata/directory_editor.h"
#include "marketdata/directory_lock.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

// Much longer than storing a group of files takes.
constexpr std::chrono::seconds kPatience(10);

// A group ends with one of these: what another import waits for, and what is in memory.
constexpr std::chrono::milliseconds kLongestGroup(500);
constexpr std::size_t kMostFiles = 100;
constexpr std::size_t kMostBars = 500'000;
// Of a file that is read while no other import has to wait for it, in bytes.
constexpr std::int64_t kLargeFile = 4 << 20;

// A run empties its working store, and what it held would be lost.
void RequireNoStore(std::string_view directory) {
  const fs::path path = NativePath(directory);
  std::error_code missing;
  if (!fs::exists(path / kWorkingStoreMark, missing)) return;
  throw ImportError("\"" + PathText(path) +
                    "\" is a working store, which each run empties; choose another directory");
}

std::string TextOf(const std::vector<ImportQuestion>& questions) {
  std::string text;
  for (const ImportQuestion& question : questions) {
    text += (text.empty() ? "" : " ") + QuestionText(question);
  }
  return text;
}

// Empty if a series was stored, else the first question or the first error.
std::string ProblemOf(const ImportReport& report) {
  const bool stored =
      std::ranges::any_of(report.series, &std::string::empty, &ImportedSeries::error);
  if (stored) return "";
  const auto question = std::ranges::find(report.series, true, &ImportedSeries::undecided);
  return question != report.series.end() ? question->error : report.series.front().error;
}

}  // namespace

ImportOptions& ImportQuestion::Add(std::string answer, std::string result,
                                   const ImportOptions& asked_with) {
  answers.push_back(
      {.text = std::move(answer), .result = std::move(result), .options = asked_with});
  return answers.back().options;
}

std::string ImportQuestion::Kind() const { return option.substr(0, option.find(' ')); }

std::string QuestionText(const ImportQuestion& question) {
  return question.text + " Set " + question.option + ".";
}

Understanding UnderstandFile(const fs::path& file, const ImportOptions& options,
                             const ImportProgress& progress) {
  return ReadPriceFile(file, options, progress).understanding;
}

// A file that was read.
struct PriceImports::Read {
  ImportedFile result;
  ImportOptions options;
  std::optional<FileStamp> stamp = {};
  std::vector<ReadPrices::Series> series = {};
  // Of each series of the report, its place among those that are to be stored.
  std::vector<std::optional<std::size_t>> places = {};

  void Merge(const ReadPrices::Series& one, SeriesMerge& merge);
};

void PriceImports::Read::Merge(const ReadPrices::Series& one, SeriesMerge& merge) {
  ImportReport& report = result.report;
  ImportedSeries& imported =
      report.series.emplace_back(ImportedSeries{.found = one.found, .error = one.found.refusal});
  places.emplace_back();
  try {
    if (imported.error.empty()) places.back() = merge.Add(one, options, imported);
  } catch (const SeriesUndecided& open) {
    imported.error = open.what();
    imported.undecided = true;
    report.questions.push_back(open.Question());
  } catch (const std::exception& error) {
    imported.error = error.what();
  }
}

PriceImports::PriceImports(std::string_view directory, IndexCache& cache, Done done)
    : directory_(directory), cache_(cache), done_(std::move(done)) {}

PriceImports::~PriceImports() = default;

void PriceImports::Add(const fs::path& file, const ImportOptions& options,
                       const ImportProgress& progress) {
  // The stamp is taken before the file is read, so that a later change is noticed.
  Read read{.result = {.file = file}, .options = options, .stamp = StampOf(file)};
  if (read.stamp && read.stamp->size > kLargeFile) StoreGroup();
  try {
    RequireNoStore(directory_);
    ReadPrices prices = ReadPriceFile(file, options, progress);
    ImportReport& report = read.result.report;
    report.remarks = std::move(prices.understanding.remarks);
    report.suggested_scale = prices.understanding.suggested_scale;
    report.questions = std::move(prices.understanding.questions);
    read.series = std::move(prices.series);
    read.result.problem = prices.understanding.refusal;
    if (read.result.problem.empty()) read.result.problem = TextOf(report.questions);
    if (!prices.understanding.refusal.empty()) report.questions.clear();
  } catch (const ImportCancelled&) {
    throw;
  } catch (const std::exception& error) {
    read.result.problem = error.what();
  }
  Take(std::move(read));
  if (IsFull()) StoreGroup();
}

void PriceImports::Finish() { StoreGroup(); }

bool PriceImports::IsFull() const {
  return !held_ || group_.size() >= kMostFiles || merge_->Bars() >= kMostBars ||
         std::chrono::steady_clock::now() - begun_ >= kLongestGroup;
}

void PriceImports::BeginGroup() {
  // Until the files are remembered: an import at the same time would undo what this one changes.
  auto held = std::make_unique<HeldDirectory>(directory_, kPatience);
  merge_ = std::make_unique<SeriesMerge>(directory_, cache_);
  held_ = std::move(held);
  begun_ = std::chrono::steady_clock::now();
}

void PriceImports::Take(Read read) {
  try {
    if (read.result.problem.empty() && !held_) BeginGroup();
    for (const ReadPrices::Series& series : read.series) {
      if (read.result.problem.empty()) read.Merge(series, *merge_);
    }
  } catch (const std::exception& error) {
    read.result.problem = error.what();
  }
  read.series = {};
  group_.push_back(std::move(read));
}

void PriceImports::StoreGroup() {
  std::vector<Read> group = std::exchange(group_, {});
  if (held_) {
    const auto problems = held_->Store(std::move(merge_->Changed()), cache_);
    for (Read& read : group) {
      ImportReport& report = read.result.report;
      for (std::size_t i = 0; i < report.series.size(); ++i) {
        const std::optional<std::size_t>& place = read.places[i];
        if (place && problems[*place]) report.series[i].error = problems[*place]->what();
      }
      if (read.result.problem.empty()) read.result.problem = ProblemOf(report);
    }
    RememberFiles(group);
    merge_.reset();
    held_.reset();
  }
  for (Read& read : group) {
    std::string& problem = read.result.problem;
    if (!problem.empty()) problem.insert(0, PathText(read.result.file) + ": ");
    done_(std::move(read.result));
  }
}

void PriceImports::RememberFiles(std::vector<Read>& group) const {
  std::vector<RememberedFile> files;
  for (const Read& read : group) {
    const bool open = !read.result.problem.empty() || !read.result.report.questions.empty();
    if (open || !read.stamp || read.options.remember == Remember::kNothing) continue;
    files.push_back({.file = read.result.file, .options = read.options, .stamp = *read.stamp});
  }
  const std::string problem = RememberImports(directory_, std::move(files));
  if (problem.empty()) return;
  for (Read& read : group) {
    if (read.result.problem.empty()) read.result.report.remarks.push_back(problem);
  }
}

ImportReport ImportFile(const fs::path& file, std::string_view directory,
                        const ImportOptions& options, IndexCache& cache,
                        const ImportProgress& progress) {
  ImportedFile imported;
  PriceImports imports(directory, cache, [&](ImportedFile one) { imported = std::move(one); });
  imports.Add(file, options, progress);
  imports.Finish();
  if (imported.problem.empty()) return std::move(imported.report);
  if (!imported.report.questions.empty()) throw ImportUndecided(imported.problem);
  throw ImportError(imported.problem);
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
