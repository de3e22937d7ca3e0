#pragma once

#include <chrono>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "cli/replay_world.h"

namespace velumar {

// Runs commands from a stream at the moments when a trader could click, and answers each with one
// line of JSON. A feed advances only as far as the commands say. A click that a trader could not
// make is answered with an "error" next to the state. "set" works on any box: during a run those of
// the account are in a hidden window.
class ReplayDriver {
 public:
  ReplayDriver(ReplayWorld& world, std::istream& in, std::ostream& out);

  // Starts the run and returns at the end of the input, even during a feed.
  // Resumes a session of the ledger if it has a number.
  void Run(int session);

 private:
  void AtFeedLoop();
  bool ReadCommand();
  // Returns true if the feed must continue before the next command.
  bool Execute();
  bool Feed(std::string_view count);
  bool Pause();
  void Begin(Control& button);
  void Resume(int session);
  void Click(Control& button);
  void Set(std::string_view assignment);
  // Fills in the ticket, for the order that it opens for unless another one is named. The reasons
  // take the rest of the line.
  void Plan(std::string_view texts);
  void Order(Control& button, std::string_view quantity);
  void AnswerIfDue();
  void Answer();
  void AddOrder(nlohmann::ordered_json& answer);
  void AddFigures(nlohmann::ordered_json& answer);
  void AnswerError(const std::string& error);

  ReplayWorld& world_;
  std::istream& in_;
  std::ostream& out_;
  std::string command_ = "begin";
  bool too_long_ = false;  // the command that ended the input
  bool answer_due_ = false;
  bool ordered_ = false;
  bool figures_asked_ = false;
  long rows_before_ = 0;
  std::string error_;  // about the current command; answered next to the state
  int passes_ = 0;     // bars to feed before the next command
  bool draining_ = false;
  std::chrono::milliseconds answered_at_{0};
};

}  // namespace velumar
