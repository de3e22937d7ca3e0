#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/price_import.h"

namespace velumar {

enum class FileState : std::uint8_t {
  kWaiting,  // to be read, with its present options
  kNotRead,  // the reading was cancelled
  kReady,
  kAsks,
  kRefused,
  kImported,
  kFailed
};

// A price file of a batch: what the user has decided, and what became of it.
struct BatchFile {
  std::filesystem::path path;
  ImportOptions options;
  FileState state = FileState::kWaiting;
  Understanding understood;  // of the last reading
  // What makes the prices tradable; it is applied once by itself, and then only by the user.
  int tradable_scale = 1;
  // The questions that answers for all files have answered, so that none is answered twice.
  std::vector<std::string> answered;
  ImportReport report;  // of an imported file
  std::string failure;  // of one that failed
};

// A series that several files of a batch write.
struct SharedSeries {
  std::string symbol;
  int interval = 0;
  std::vector<std::size_t> others = {};  // files
};

// The files of an import window. Nothing here reads or writes a file.
class ImportBatch {
 public:
  // Adds the price files among the paths, those of folders included. Other paths become lines that
  // say so. A file that is listed already is read again.
  void Add(std::vector<std::filesystem::path> paths);

  std::size_t Size() const { return files_.size(); }
  const BatchFile& At(std::size_t file) const { return files_.at(file); }
  std::size_t Count(FileState state) const;
  // The files in that state, in their order.
  std::vector<std::size_t> In(FileState state) const;
  // The next file to read: the preferred one if it is waiting.
  std::optional<std::size_t> NextWaiting(std::size_t preferred) const;
  void StopWaiting();

  // Reads the file again with other options. A line of a file that isn't a price file stays.
  void Decide(std::size_t file, ImportOptions options);
  // Answers the first question of a file, and with `for_all` the same question of all others, those
  // that are still to be read included.
  void Answer(std::size_t file, std::size_t answer, bool for_all);
  // The files whose first question is the same as that of this file, itself included.
  std::size_t WithSameQuestion(std::size_t file) const;

  // The series that other files of the batch write, too.
  std::vector<SharedSeries> Shared(std::size_t file) const;

  // The result of a reading with the present options. If a default or an answer for all files
  // changes the options, the file waits again.
  void Take(std::size_t file, Understanding understood);
  // What became of a file of the batch. A question that its import raised is asked like one of its
  // reading.
  void TakeImported(ImportedFile imported);

 private:
  // Remembers nothing of a file that is not a price file.
  void AddFile(const std::filesystem::path& path, Remember remember);
  // Sets the state of a file with questions.
  void Ask(BatchFile& file);
  bool AnswerByItself(BatchFile& file);
  void FollowSeries(std::size_t file);

  std::vector<BatchFile> files_;
  // What the user has answered for all files: the kind of a question and the text of its answer.
  std::vector<std::pair<std::string, std::string>> answers_;
  // The files that write a series, by its symbol and interval.
  std::multimap<std::pair<std::string, int>, std::size_t> writers_;
};

// True for a price file, and for a folder with at least one.
bool HoldsPrices(const std::filesystem::path& path);

}  // namespace velumar
