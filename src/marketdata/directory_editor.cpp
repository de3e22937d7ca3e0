#include "marketdata/directory_editor.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <system_error>

#include "base/paths.h"
#include "base/text.h"
#include "marketdata/bar_codec.h"
#include "marketdata/directory_lock.h"
#include "marketdata/index_entries.h"
#include "marketdata/metalib_error.h"
#include "marketdata/security_storage.h"
#include "marketdata/stored_text.h"

namespace velumar {

namespace {

constexpr std::size_t kLongestSymbol = 14;
constexpr int kLongestInterval = 24 * 60;

[[noreturn]] void ThrowBadIdentity(const std::string& text) {
  throw MetaLibError(MetaLibError::kNotStorable, text);
}

bool HasControls(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::size_t StoredSize(std::string_view text) {
  try {
    return TextForFile(text).size();
  } catch (const std::invalid_argument& error) {
    ThrowBadIdentity(error.what());
  }
}

BarField DifferingField(const BarLayout& layout, const Bar& a, const Bar& b) {
  if (a.date != b.date) return BarField::kDate;
  if (a.time != b.time) return BarField::kTime;
  return *std::ranges::find_if(layout.Fields(), [&](BarField field) {
    const auto member = FloatField(field);
    return member != nullptr && a.*member != b.*member;
  });
}

void CheckIdentity(const NewSecurity& security) {
  const std::string quoted = "\"" + security.symbol + "\"";
  const std::size_t size = StoredSize(security.symbol);
  StoredSize(security.name);
  if (size == 0 || size > kLongestSymbol || HasControls(security.symbol) ||
      Trimmed(security.symbol) != security.symbol) {
    ThrowBadIdentity("The symbol " + quoted +
                     " can't be stored: a symbol has 1 to 14 characters and no blanks around it");
  }
  if (HasControls(security.name)) {
    ThrowBadIdentity(quoted + ": the name \"" + security.name + "\" can't be stored");
  }
  if (security.interval != -1 && (security.interval < 1 || security.interval > kLongestInterval)) {
    ThrowBadIdentity(quoted + ": an interval of " + std::to_string(security.interval) +
                     " minutes can't be stored");
  }
}

void CheckBars(const NewSecurity& security, const std::vector<Bar>& bars, std::string_view place) {
  const BarLayout layout = WantedLayout(security.interval);
  std::array<std::byte, 4 * kBarFields> buffer{};
  const ByteSpan record = std::span(buffer).first(layout.RecordSize());
  for (const Bar& bar : bars) {
    const auto refused = EncodeBar(layout, bar, record);
    if (refused) ThrowNotStorable(place, security.symbol, bar, *refused);
    const Bar stored = DecodeBar(layout, record);
    if (stored != bar) {
      ThrowNotStorable(place, security.symbol, bar, DifferingField(layout, stored, bar));
    }
  }
}

// Creates a missing directory, and removes it again unless Keep is called.
class CreatedDirectory {
 public:
  explicit CreatedDirectory(const std::filesystem::path& path) : path_(path) {
    std::error_code error;
    created_ = std::filesystem::create_directories(path_, error);
    if (error) {
      throw MetaLibError(MetaLibError::kWriteFailed, "The folder \"" + PathText(path_) +
                                                         "\" can't be created: " + error.message());
    }
  }
  ~CreatedDirectory() {
    std::error_code ignored;
    if (created_) std::filesystem::remove_all(path_, ignored);
  }
  CreatedDirectory(const CreatedDirectory&) = delete;
  CreatedDirectory& operator=(const CreatedDirectory&) = delete;

  void Keep() { created_ = false; }

 private:
  std::filesystem::path path_;
  bool created_ = false;
};

std::shared_ptr<DirectoryIndex> LoadOrStart(IndexCache::Entries& cache,
                                            std::string_view directory) {
  try {
    return cache.Load(directory);
  } catch (const MetaLibError& error) {
    if (error.Number() != MetaLibError::kNoData) throw;
  }
  const std::filesystem::path path = NativePath(directory);
  return std::make_shared<DirectoryIndex>(path, DirectoryListing::Read(path));
}

}  // namespace

void StoreSecurity(std::string_view directory, const NewSecurity& security,
                   const std::vector<Bar>& bars, IndexCache& cache) {
  CheckIdentity(security);
  CheckBars(security, bars, directory);
  const std::filesystem::path path = NativePath(directory);
  CreatedDirectory created(path);
  const auto lock = DirectoryLock::TryHold(path);
  if (!lock) ThrowInUse(path);
  const auto index = LoadOrStart(cache.Contents(), directory);
  SecurityStorage(*index, security).Store(bars);
  created.Keep();
}

}  // namespace velumar
