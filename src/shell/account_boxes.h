#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "forms/desktop.h"
#include "session/run_inputs.h"
#include "session/sim_session.h"

namespace velumar {

// The default quantity of an order in the market of this data directory; nothing if its path names
// no market.
std::optional<std::string_view> DefaultQuantity(std::string_view data_dir);

// The five boxes of the account in the setup window. A box whose text can't be used is red, and the
// second line of its tooltip says why.
class AccountBoxes {
 public:
  AccountBoxes(SimSession& session, const RunInputs& inputs, Desktop& desktop)
      : session_(session), inputs_(inputs), desktop_(desktop) {}

  // Marks each box as it is typed into.
  void BindEvents();
  void MarkAll();
  // Why the first unusable box can't be used; nothing if all can.
  std::optional<std::string> Problem();

  // Call it after a change of the data directory: fills the boxes with its market's defaults, reads
  // the figures of a contract and marks what can't be used.
  void DirectoryChanged();
  // Groups the thousands in the boxes that hold money.
  void GroupTexts();

 private:
  SimSession& session_;
  const RunInputs& inputs_;
  Desktop& desktop_;
};

}  // namespace velumar
