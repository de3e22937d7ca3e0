#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "import/file_reading.h"
#include "marketdata/directory_editor.h"

namespace velumar {

// A question about a series that only its stored bars leave open.
class SeriesUndecided : public ImportError {
 public:
  explicit SeriesUndecided(ImportQuestion question)
      : ImportError(QuestionText(question)), question_(std::move(question)) {}
  const ImportQuestion& Question() const { return question_; }

 private:
  ImportQuestion question_;
};

// The series that a directory will have once the files of a group are stored. Nothing is written.
class SeriesMerge {
 public:
  using Key = std::pair<std::string, int>;  // symbol and interval

  // The directory as it is: nobody else may change it while this object exists. The cache must
  // outlive it.
  SeriesMerge(std::string_view directory, IndexCache& cache);

  // Adds the bars of a file to what is stored or was added before, and counts them in `result`.
  // Returns the place of the series in Changed, if it differs from the stored one. Throws
  // SeriesUndecided if a run could not play the result, ImportError or MetaLibError.
  std::optional<std::size_t> Add(const ReadPrices::Series& series, const ImportOptions& options,
                                 ImportedSeries& result);

  // The series that differ from the stored ones, in the order in which they were added.
  std::vector<NewSeries>& Changed() { return changed_; }
  std::size_t Bars() const { return bars_; }

 private:
  // Of a series as it is stored or was added.
  struct Known {
    std::string name;
    std::vector<Bar> bars;
  };

  std::optional<Known> Find(const Key& key);

  std::string directory_;
  IndexCache& cache_;
  std::map<Key, std::string> names_;  // of the stored series
  std::vector<NewSeries> changed_;
  std::map<Key, std::size_t> places_;  // in changed_
  std::size_t bars_ = 0;               // of changed_, or more
};

}  // namespace velumar
