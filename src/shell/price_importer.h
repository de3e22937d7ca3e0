#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <utility>

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
  // As the constructor, Add and Finish of PriceImports, in this order.
  virtual void BeginImport(std::string_view directory, PriceImports::Done done) = 0;
  virtual void Import(const std::filesystem::path& file, const ImportOptions& options,
                      const ImportProgress& progress) = 0;
  virtual void FinishImport() = 0;
};

// Imports files of the disk.
class FileImporter : public PriceImporter {
 public:
  explicit FileImporter(IndexCache& cache) : cache_(cache) {}
  Understanding Understand(const std::filesystem::path& file, const ImportOptions& options,
                           const ImportProgress& progress) override {
    return UnderstandFile(file, options, progress);
  }
  void BeginImport(std::string_view directory, PriceImports::Done done) override {
    imports_ = std::make_unique<PriceImports>(directory, cache_, std::move(done));
  }
  void Import(const std::filesystem::path& file, const ImportOptions& options,
              const ImportProgress& progress) override {
    imports_->Add(file, options, progress);
  }
  void FinishImport() override {
    imports_->Finish();
    imports_.reset();
  }

 private:
  IndexCache& cache_;
  std::unique_ptr<PriceImports> imports_;
};

}  // namespace velumar
