#include "shell/import_batch.h"

#include <algorithm>
#include <system_error>

#include "base/paths.h"

namespace velumar {

namespace {

constexpr std::string_view kNotAPriceFile =
    "not a file whose name ends in .csv, .txt, .tsv, .prn, .zip or .gz";

bool IsFolder(const std::filesystem::path& path) {
  std::error_code unreadable;
  return std::filesystem::is_directory(path, unreadable);
}

// None if the folder can't be read.
std::vector<std::filesystem::path> FilesOfFolder(const std::filesystem::path& folder) {
  try {
    return PriceFilesIn({folder});
  } catch (const ImportError&) {
    return {};
  }
}

const ImportQuestion& FirstQuestion(const BatchFile& file) {
  return file.understood.questions.front();
}

bool SameQuestion(const BatchFile& a, const BatchFile& b) {
  return a.state == FileState::kAsks && b.state == FileState::kAsks &&
         FirstQuestion(a).Kind() == FirstQuestion(b).Kind();
}

// The answer of that text to the first question of a file; null if there is none.
const ImportQuestion::Answer* AnswerOf(const BatchFile& file, const std::string& text) {
  const auto& answers = FirstQuestion(file).answers;
  const auto found = std::ranges::find(answers, text, &ImportQuestion::Answer::text);
  return found == answers.end() ? nullptr : &*found;
}

}  // namespace

bool HoldsPrices(const std::filesystem::path& path) {
  return IsFolder(path) ? !FilesOfFolder(path).empty() : IsPriceFile(path);
}

void ImportBatch::Add(std::vector<std::filesystem::path> paths) {
  std::ranges::sort(paths);
  for (const auto& path : paths) {
    if (!IsFolder(path) && IsPriceFile(path)) AddFile(path, Remember::kFile);
  }
  for (const auto& path : paths) {
    if (!IsFolder(path)) continue;
    for (const auto& file : FilesOfFolder(path)) AddFile(file, Remember::kFolder);
  }
  for (const auto& path : paths) {
    if (!HoldsPrices(path)) AddFile(path, Remember::kNothing);
  }
}

void ImportBatch::AddFile(const std::filesystem::path& path, Remember remember) {
  const auto listed = std::ranges::find(files_, path, &BatchFile::path);
  if (listed != files_.end()) {
    ImportOptions options = listed->options;
    if (remember == Remember::kFolder) options.remember = remember;
    return Decide(static_cast<std::size_t>(listed - files_.begin()), std::move(options));
  }
  BatchFile& added = files_.emplace_back();
  added.path = path;
  added.options.remember = remember;
  if (remember != Remember::kNothing) return;
  added.state = FileState::kRefused;
  added.understood.refusal = kNotAPriceFile;
}

std::size_t ImportBatch::Count(FileState state) const {
  return static_cast<std::size_t>(std::ranges::count(files_, state, &BatchFile::state));
}

std::vector<std::size_t> ImportBatch::In(FileState state) const {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < files_.size(); ++i) {
    if (files_[i].state == state) found.push_back(i);
  }
  return found;
}

std::optional<std::size_t> ImportBatch::NextWaiting(std::size_t preferred) const {
  if (preferred < Size() && At(preferred).state == FileState::kWaiting) return preferred;
  const auto next = std::ranges::find(files_, FileState::kWaiting, &BatchFile::state);
  if (next == files_.end()) return std::nullopt;
  return static_cast<std::size_t>(next - files_.begin());
}

void ImportBatch::StopWaiting() {
  for (BatchFile& file : files_) {
    if (file.state == FileState::kWaiting) file.state = FileState::kNotRead;
  }
}

void ImportBatch::Decide(std::size_t file, ImportOptions options) {
  BatchFile& decided = files_.at(file);
  if (decided.options.remember == Remember::kNothing) return;
  decided.options = std::move(options);
  decided.state = FileState::kWaiting;
}

void ImportBatch::Answer(std::size_t file, std::size_t answer, bool for_all) {
  const BatchFile asked = files_.at(file);
  const std::string kind = FirstQuestion(asked).Kind();
  const std::string text = FirstQuestion(asked).answers.at(answer).text;
  if (for_all) answers_.emplace_back(kind, text);
  for (std::size_t i = 0; i < files_.size(); ++i) {
    if (i != file && !(for_all && SameQuestion(files_[i], asked))) continue;
    if (const ImportQuestion::Answer* chosen = AnswerOf(files_[i], text)) {
      files_[i].answered.push_back(kind);
      Decide(i, ImportOptions(chosen->options));
    }
  }
}

std::size_t ImportBatch::WithSameQuestion(std::size_t file) const {
  return static_cast<std::size_t>(std::ranges::count_if(
      files_, [&](const BatchFile& other) { return SameQuestion(other, At(file)); }));
}

void ImportBatch::Take(std::size_t file, Understanding understood) {
  BatchFile& read = files_.at(file);
  read.understood = std::move(understood);
  FollowSeries(file);
  const int scale = read.understood.suggested_scale;
  if (scale > 1 && read.tradable_scale == 1) {
    read.tradable_scale = scale;
    if (read.options.scale == 1) {
      read.options.scale = scale;
      return;
    }
  }
  if (!read.understood.refusal.empty()) {
    read.state = FileState::kRefused;
  } else if (read.understood.questions.empty()) {
    read.state = FileState::kReady;
  } else {
    Ask(read);
  }
}

void ImportBatch::Ask(BatchFile& file) {
  file.state = FileState::kAsks;
  if (AnswerByItself(file)) file.state = FileState::kWaiting;
}

void ImportBatch::FollowSeries(std::size_t file) {
  std::erase_if(writers_, [file](const auto& one) { return one.second == file; });
  for (const FoundSeries& series : At(file).understood.series) {
    if (!series.refusal.empty() || series.interval == 0) continue;
    writers_.emplace(std::pair(series.symbol, series.interval), file);
  }
}

std::vector<SharedSeries> ImportBatch::Shared(std::size_t file) const {
  std::vector<SharedSeries> all;
  for (const FoundSeries& series : At(file).understood.series) {
    SharedSeries shared{.symbol = series.symbol, .interval = series.interval};
    const auto [first, last] = writers_.equal_range({series.symbol, series.interval});
    for (auto writer = first; writer != last; ++writer) {
      if (writer->second != file) shared.others.push_back(writer->second);
    }
    if (!shared.others.empty()) all.push_back(std::move(shared));
  }
  return all;
}

bool ImportBatch::AnswerByItself(BatchFile& file) {
  const std::string kind = FirstQuestion(file).Kind();
  if (std::ranges::count(file.answered, kind) > 0) return false;
  for (auto known = answers_.rbegin(); known != answers_.rend(); ++known) {
    if (known->first != kind) continue;
    const ImportQuestion::Answer* answer = AnswerOf(file, known->second);
    if (answer == nullptr) continue;
    file.answered.push_back(kind);
    file.options = ImportOptions(answer->options);
    return true;
  }
  return false;
}

void ImportBatch::TakeImported(ImportedFile imported) {
  const auto file = std::ranges::find(files_, imported.file, &BatchFile::path);
  if (file == files_.end()) return;
  if (!imported.report.questions.empty()) {
    file->understood.questions = std::move(imported.report.questions);
    return Ask(*file);
  }
  file->state = imported.problem.empty() ? FileState::kImported : FileState::kFailed;
  file->failure = std::move(imported.problem);
  file->report = std::move(imported.report);
}

}  // namespace velumar
