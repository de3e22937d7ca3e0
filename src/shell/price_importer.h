#pragma once

#include <filesystem>
#include <string_view>

#include "import/price_import.h"

namespace velumar {

// What the import window needs of the import of price files; a test answers with files that aren't
// there.
class PriceImporter {
 public:
  virtual ~PriceImporter() = default;
  // As UnderstandFile.
  virtual Understanding Understand(const std::filesystem::path& file, const ImportOptions& options,
                                   const ImportProgress& progress) = 0;
  // As ImportFile.
  virtual ImportReport Import(const std::filesystem::path& file, std::string_view directory,
                              const ImportOptions& options, const ImportProgress& progress) = 0;
};

// Imports files of the disk.
class FileImporter : public PriceImporter {
 public:
  explicit FileImporter(IndexCache& cache) : cache_(cache) {}
  Understanding Understand(const std::filesystem::path& file, const ImportOptions& options,
                           const ImportProgress& progress) override {
    return UnderstandFile(file, options, progress);
  }
  ImportReport Import(const std::filesystem::path& file, std::string_view directory,
                      const ImportOptions& options, const ImportProgress& progress) override {
    return ImportFile(file, directory, options, cache_, progress);
  }

 private:
  IndexCache& cache_;
};

}  // namespace velumar
