#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "forms/frm_import.h"
#include "platform/platform.h"
#include "shell/import_batch.h"

namespace velumar {

// The boxes of the import window in which the trader decides about the selected files: symbol,
// interval, days, time zones and the like.
class ImportBoxes {
 public:
  using Change = std::function<void(ImportOptions& options, const BatchFile& file)>;
  struct Surroundings {
    std::function<bool()> open;  // false while nothing can be decided
    std::function<void(const Change&)> decide;
    std::function<void(const std::string&)> refuse;  // shows why a text is not taken
  };

  ImportBoxes(FrmImport& form, Platform& platform, Surroundings surroundings);

  // Fills the lists. Call after the window is loaded.
  void Load();
  // Shows what is decided for a file, and how many files a change decides about.
  void Show(const BatchFile& file, std::size_t selected);
  // True if a text was changed and has not been taken.
  bool HasTyped() const { return TypedTexts() != filled_; }
  void TakeTypedTexts();

 private:
  // The texts of the boxes as they were filled, to see what the trader has changed.
  struct BoxTexts {
    std::string symbol;
    std::string name;
    std::string from;
    std::string to;
    std::string from_zone;
    std::string to_zone;
    bool operator==(const BoxTexts&) const = default;
  };

  void Bind(std::function<void()>& event, Change change);
  void FillLists();
  void Fill(const BatchFile& file, bool single);
  void Enable(const BatchFile& file, bool single);
  BoxTexts TypedTexts() const;
  std::optional<std::int32_t> TypedDay(std::string_view text) const;

  FrmImport& form_;
  Platform& platform_;
  Surroundings surroundings_;
  BoxTexts filled_;
  bool filling_ = false;  // boxes are being filled, so that their events are none of the trader's
};

}  // namespace velumar
