#include <map>
#include <set>
#include <utility>

#include "import/import_memory.h"
#include "import/price_import.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

struct Source {
  fs::path file;  // or a folder that can't be read
  ImportOptions options = {};
  std::string problem = {};
};

bool HasChanged(const RememberedFile& known) {
  const std::optional<FileStamp> now = StampOf(known.file);
  return now && (now->size != known.stamp.size || now->changed_ns != known.stamp.changed_ns);
}

// The options of a folder's new files: those that all of its known files share, which name no
// security.
std::map<fs::path, ImportOptions> FolderOptions(const std::vector<RememberedFile>& known) {
  std::map<fs::path, ImportOptions> folders;
  for (const RememberedFile& one : known) {
    if (one.options.remember != Remember::kFolder) continue;
    ImportOptions options = one.options;
    options.symbol.reset();
    options.name.reset();
    const auto [folder, is_new] = folders.try_emplace(one.file.parent_path(), options);
    if (!is_new && folder->second != options) {
      folder->second = {.remember = Remember::kFolder};
    }
  }
  return folders;
}

std::vector<Source> ChangedSources(const std::vector<RememberedFile>& known) {
  std::vector<Source> sources;
  std::set<fs::path> known_files;
  for (const RememberedFile& one : known) {
    known_files.insert(one.file);
    if (HasChanged(one)) sources.push_back({one.file, one.options});
  }
  for (const auto& [folder, options] : FolderOptions(known)) {
    std::error_code missing;
    if (!fs::is_directory(folder, missing)) continue;
    try {
      for (const fs::path& file : PriceFilesIn({folder})) {
        if (!known_files.contains(file)) sources.push_back({file, options});
      }
    } catch (const ImportError& error) {
      sources.push_back({.file = folder, .problem = error.what()});
    }
  }
  return sources;
}

}  // namespace

std::vector<ImportedFile> UpdateImports(std::string_view directory, IndexCache& cache,
                                        const ImportProgress& progress) {
  const std::vector<Source> sources = ChangedSources(RememberedImports(directory));
  std::vector<ImportedFile> updated;
  PriceImports imports(directory, cache,
                       [&](ImportedFile file) { updated.push_back(std::move(file)); });
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const auto part = [&](double of_file) {
      return !progress ||
             progress((static_cast<double>(i) + of_file) / static_cast<double>(sources.size()));
    };
    if (sources[i].problem.empty()) imports.Add(sources[i].file, sources[i].options, part);
  }
  imports.Finish();
  for (const Source& source : sources) {
    if (source.problem.empty()) continue;
    updated.push_back({.file = source.file, .problem = source.problem});
  }
  return updated;
}

}  // namespace velumar
