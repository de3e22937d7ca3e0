#pragma once

#include <optional>
#include <string_view>

#include "forms/desktop.h"
#include "session/sim_session.h"

namespace velumar {

// What an order's quantity starts with in the market of this data directory; nothing where its path
// holds no market's word.
std::optional<std::string_view> PresetQuantity(std::string_view data_dir);

// The figures of the account, as the market in the data directory's path sets them.
class MarketPresets {
 public:
  MarketPresets(SimSession& session, Desktop& desktop) : session_(session), desktop_(desktop) {}

  // The directory is another one: its market's words fill the boxes, the figures of a contract are
  // read from them, and all that can't be used is marked.
  void DirectoryChanged();
  // Thousands grouping for the boxes of money.
  void GroupTexts();

 private:
  void FillBoxes();
  void ReadContractFigures();

  SimSession& session_;
  Desktop& desktop_;
};

}  // namespace velumar
