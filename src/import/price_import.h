#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "import/import_options.h"
#include "import/price_reader.h"
#include "marketdata/bar.h"

namespace velumar {

class HeldDirectory;
class IndexCache;
class SeriesMerge;

// Called every few milliseconds with the part that is done, 0 to 1. Returns false to cancel: the
// call throws ImportCancelled and nothing is changed.
using ImportProgress = std::function<bool(double done)>;
class ImportCancelled : public ImportError {
 public:
  ImportCancelled() : ImportError("cancelled") {}
};

// What a file leaves open, and its possible answers, each with what it leads to.
struct ImportQuestion {
  struct Answer {
    std::string text;       // "day first"
    std::string result;     // "2 January 2020 to 11 November 2020"
    ImportOptions options;  // those of the call with this answer
  };
  std::string text;                  // "Which comes first in 03/04/2020?"
  std::string option;                // "--date-order dmy or mdy"
  std::vector<Answer> answers = {};  // empty if only a text or number can answer it

  // Adds an answer. Returns its options, for the one that it decides to be set.
  ImportOptions& Add(std::string answer, std::string result, const ImportOptions& asked_with);
  // The first word of the option, which questions of one kind share, whatever their file.
  std::string Kind() const;
};

// "The bars are 1 minute apart. Set --interval 5, 10, 15, 30, 60 or D."
std::string QuestionText(const ImportQuestion& question);

// A series that a file yields, after aggregation and scaling. While a question is open, interval is
// 0 and the bars are those of the file.
struct FoundSeries {
  std::string symbol = {};
  std::string name = {};  // as it will be stored; empty for that of the stored series or the symbol
  int interval = 0;       // kDaily or minutes
  std::int64_t bars = 0;
  Bar first = {};
  Bar last = {};
  std::string refusal = {};  // why this series cannot be imported; the others of the file can
};

// The text of a line next to the bar that was read from it; the bar has no date if none was.
struct SampleRow {
  std::int64_t line = 0;
  std::string text;
  Bar bar;
};

// What was understood of a price file.
struct Understanding {
  std::filesystem::path file;
  FileFormat format;
  RowCounts counts;
  std::vector<FoundSeries> series;
  std::vector<ImportQuestion> questions;
  std::vector<std::string> remarks;  // sentences: contradictory prices, skipped lines, ...
  // The first and the last three rows; of a file without any, its first lines.
  std::vector<SampleRow> head;
  std::vector<SampleRow> tail;
  int suggested_scale = 1;  // what would make the prices tradable in hundredths
  std::string refusal;      // why the file cannot be imported; empty if a series of it can

  bool Ready() const { return refusal.empty() && questions.empty(); }
};

// Reads the whole file, writes nothing. What the file leaves open is in `questions`, what makes it
// unreadable in `refusal`. `progress` may be empty. Throws only ImportCancelled.
Understanding UnderstandFile(const std::filesystem::path& file, const ImportOptions& options,
                             const ImportProgress& progress);

// What became of one series.
struct ImportedSeries {
  FoundSeries found = {};
  std::int64_t added = 0;
  std::int64_t changed = 0;
  std::int64_t kept = 0;   // stored bars within the days of the file that the file lacks
  bool replaced = false;   // or new: nothing was kept
  std::string error = {};  // why it was not stored; it is then as it was before
  bool undecided = false;  // the error is a question: it names the options that decide it
};

struct ImportReport {
  std::vector<ImportedSeries> series = {};
  std::vector<std::string> remarks = {};
  int suggested_scale = 1;                     // as in Understanding
  std::vector<ImportQuestion> questions = {};  // that kept the file or a series from being stored
};

// What became of one file of several.
struct ImportedFile {
  std::filesystem::path file = {};  // or a remembered folder that can't be read
  ImportReport report = {};
  std::string problem = {};  // why no series of it was stored; names the file
};

// A question is open. what() names the option that decides it.
class ImportUndecided : public ImportError {
 public:
  using ImportError::ImportError;
};

// Adds the bars of price files to a market data directory, in one pass over each file, each series
// completely or not at all. Stored bars that a file lacks are kept, others are corrected. Unless a
// question is open, a file and its options are remembered there.
//
// Files are stored in groups, since flushing each to the disk by itself takes most of the time of
// many small ones. Other imports into the directory wait for the end of the group.
class PriceImports {
 public:
  // Called for each file, in their order, once its bars are on the disk or it has failed: by Add
  // or Finish.
  using Done = std::function<void(ImportedFile file)>;

  // `cache` must outlive the object.
  PriceImports(std::string_view directory, IndexCache& cache, Done done);
  // Without Finish, the files that were not reported are not stored.
  ~PriceImports();
  PriceImports(const PriceImports&) = delete;
  PriceImports& operator=(const PriceImports&) = delete;

  // Only the reading can be cancelled: then throws ImportCancelled, and the file counts as not
  // added.
  void Add(const std::filesystem::path& file, const ImportOptions& options,
           const ImportProgress& progress);
  void Finish();

 private:
  struct Read;

  void BeginGroup();
  void Take(Read read);
  bool IsFull() const;
  void StoreGroup();
  void RememberFiles(std::vector<Read>& group) const;

  std::string directory_;
  IndexCache& cache_;
  Done done_;
  // The group of files that are to be stored.
  std::vector<Read> group_;
  std::unique_ptr<HeldDirectory> held_;
  std::unique_ptr<SeriesMerge> merge_;
  std::chrono::steady_clock::time_point begun_;
};

// Imports one file. If no series is stored, throws ImportUndecided or ImportError, which name the
// file.
ImportReport ImportFile(const std::filesystem::path& file, std::string_view directory,
                        const ImportOptions& options, IndexCache& cache,
                        const ImportProgress& progress);

// Imports the files that the directory remembers again, where they have changed since, and the new
// files of its remembered folders, with the options that all known files of the folder share.
// Returns the files that were new or changed, and folders that can't be read. Throws ImportError if
// what the directory remembers can't be read, and ImportCancelled.
std::vector<ImportedFile> UpdateImports(std::string_view directory, IndexCache& cache,
                                        const ImportProgress& progress);

// The price files among `paths`, folders included (not their subfolders), sorted.
std::vector<std::filesystem::path> PriceFilesIn(const std::vector<std::filesystem::path>& paths);
// True for .csv, .txt, .tsv, .prn, .zip and .gz in any case.
bool IsPriceFile(const std::filesystem::path& file);

}  // namespace velumar
