#include <algorithm>
#include <ostream>
#include <stdexcept>

#include "base/paths.h"
#include "cli/commands.h"
#include "cli/import_texts.h"

namespace velumar {

namespace {

namespace fs = std::filesystem;

// A line on the terminal that shows how far a file has been read.
class TerminalProgress {
 public:
  explicit TerminalProgress(CliContext& context) : context_(context) {}
  ~TerminalProgress() { Clear(); }
  TerminalProgress(const TerminalProgress&) = delete;
  TerminalProgress& operator=(const TerminalProgress&) = delete;

  // Refers to this object.
  ImportProgress Of(const fs::path& file) {
    if (!context_.shows_progress) return {};
    return [this, name = PathText(file.filename())](double done) {
      Show(name, static_cast<int>(done * 100));
      return true;
    };
  }

  // Before anything else is printed.
  void Clear() {
    if (!shown_.empty()) context_.err << "\r\x1b[K" << std::flush;
    shown_.clear();
  }

 private:
  void Show(const std::string& name, int percent) {
    std::string text = name + ": " + std::to_string(percent) + " %";
    if (text == shown_) return;
    context_.err << (shown_.empty() ? "\r" : "\r\x1b[K") << text << std::flush;
    shown_ = std::move(text);
  }

  CliContext& context_;
  std::string shown_;
};

struct Source {
  fs::path file;
  Remember remember = Remember::kFile;
};

std::vector<Source> SourcesOf(const std::vector<std::string>& paths) {
  std::vector<Source> sources;
  for (const std::string& text : paths) {
    const fs::path path = NativePath(text);
    std::error_code missing;
    const bool folder = fs::is_directory(path, missing);
    const std::vector<fs::path> files = PriceFilesIn({path});
    if (files.empty()) throw std::runtime_error(text + ": the folder has no price files");
    for (const fs::path& file : files) {
      sources.push_back({file, folder ? Remember::kFolder : Remember::kFile});
    }
  }
  return sources;
}

void PrintReport(const fs::path& file, const ImportReport& report, CliContext& context) {
  const std::string name = PathText(file) + ": ";
  for (const std::string& remark : report.remarks) context.err << name << remark << '\n';
  const std::string advice = ScaleAdvice(report.suggested_scale, report.series.front().found);
  if (!advice.empty()) context.err << name << advice << '\n';
  for (const ImportedSeries& series : report.series) {
    if (series.error.empty()) {
      context.out << ImportedText(series) << '\n';
    } else {
      context.err << name << series.found.symbol << ": " << series.error << '\n';
    }
  }
}

int CodeOf(const ImportReport& report) {
  int code = 0;
  for (const ImportedSeries& series : report.series) {
    if (!series.error.empty()) code = std::max(code, series.undecided ? kUndecided : kFailure);
  }
  return code;
}

// Returns the exit code.
int PrintFile(const ImportedFile& file, CliContext& context) {
  if (file.problem.empty()) {
    PrintReport(file.file, file.report, context);
    return CodeOf(file.report);
  }
  context.err << "velumar-cli: " << file.problem << '\n';
  return file.report.questions.empty() ? kFailure : kUndecided;
}

int ImportAll(const std::vector<Source>& sources, const std::string& directory,
              ImportOptions options, CliContext& context) {
  int code = 0;
  TerminalProgress progress(context);
  PriceImports imports(directory, context.cache, [&](const ImportedFile& file) {
    progress.Clear();
    code = std::max(code, PrintFile(file, context));
    context.out << std::flush;
  });
  for (const Source& source : sources) {
    options.remember = source.remember;
    imports.Add(source.file, options, progress.Of(source.file));
  }
  imports.Finish();
  return code;
}

int CodeOf(const Understanding& file) {
  if (!file.questions.empty() && file.refusal.empty()) return kUndecided;
  const bool refused =
      !file.refusal.empty() ||
      !std::ranges::all_of(file.series, &std::string::empty, &FoundSeries::refusal);
  return refused ? kFailure : 0;
}

int Preview(const std::vector<Source>& sources, const ImportArguments& arguments,
            CliContext& context) {
  std::vector<Understanding> files;
  int code = 0;
  TerminalProgress progress(context);
  for (const Source& source : sources) {
    files.push_back(UnderstandFile(source.file, arguments.options, progress.Of(source.file)));
    code = std::max(code, CodeOf(files.back()));
  }
  progress.Clear();
  if (arguments.json) {
    context.out << UnderstandingJson(files);
    return code;
  }
  context.out << UnderstandingText(files);
  if (!arguments.explain) return code;
  for (const Understanding& file : files) {
    if (!file.format.columns.empty()) context.out << ExplanationText(file);
  }
  return code;
}

}  // namespace

int Import(const ImportArguments& arguments, CliContext& context) {
  std::vector<std::string> paths = arguments.paths;
  const std::string directory = paths.back();
  std::error_code missing;
  // A preview needs no directory.
  const bool names_directory =
      !arguments.dry_run ||
      (paths.size() > 1 && !fs::is_regular_file(NativePath(directory), missing));
  if (names_directory) paths.pop_back();
  if (paths.empty()) {
    context.err << "velumar-cli: DIR, the market data directory, is missing after \"" << directory
                << "\"\n";
    return kUndecided;
  }
  const std::vector<Source> sources = SourcesOf(paths);
  if (arguments.dry_run) return Preview(sources, arguments, context);
  return ImportAll(sources, directory, arguments.options, context);
}

int UpdateDirectory(const std::string& directory, CliContext& context) {
  std::error_code missing;
  if (!fs::is_directory(NativePath(directory), missing)) {
    throw std::runtime_error(directory + ": there is no such directory");
  }
  TerminalProgress progress(context);
  const std::vector<ImportedFile> files =
      UpdateImports(directory, context.cache, progress.Of(NativePath(directory)));
  progress.Clear();
  if (files.empty()) context.out << "nothing new\n";
  int code = 0;
  for (const ImportedFile& file : files) code = std::max(code, PrintFile(file, context));
  return code;
}

}  // namespace velumar
