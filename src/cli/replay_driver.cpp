#include "cli/replay_driver.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "cli/commands.h"
#include "cli/json_text.h"

namespace velumar {

namespace {

constexpr std::size_t kLongestCommand = 16384;

// Thrown to leave all running loops and handlers at the end of the input. Not a std::exception, so
// that nothing on the way handles it.
struct EndOfInput {};

// The command's name, and the rest of the line after one blank.
std::pair<std::string_view, std::string_view> Split(std::string_view line) {
  const std::size_t blank = line.find(' ');
  if (blank == std::string_view::npos) return {line, {}};
  return {line.substr(0, blank), line.substr(blank + 1)};
}

// The control of a command; null if it is not in the list.
Control* Named(std::string_view command,
               std::initializer_list<std::pair<std::string_view, Control*>> controls) {
  const auto* const found =
      std::ranges::find(controls, command, &std::pair<std::string_view, Control*>::first);
  return found == controls.end() ? nullptr : found->second;
}

int LastKey(std::string_view text) {
  return text.empty() ? 0 : static_cast<unsigned char>(text.back());
}

std::string OrderResultText(OrderResult result) {
  switch (result) {
    case OrderResult::kDone:
      return "done";
    case OrderResult::kRefused:
      return "refused";
    case OrderResult::kNothingHeld:
      return "nothing held";
    case OrderResult::kTooMuch:
      return "too much";
    default:
      return "invalid";
  }
}

long LedgerRowCount(LedgerConnection& ledger) {
  if (!ledger.CanRead()) return 0;
  const LedgerRecordset count = LedgerQuery(ledger, "select count(*) From MyPortfolio");
  return static_cast<long>(std::get<double>(count.rows.at(0).at(0)));
}

nlohmann::ordered_json NewestLedgerRow(LedgerConnection& ledger) {
  const LedgerRecordset newest = LedgerQuery(
      ledger, "select * From MyPortfolio where rowid = (select max(rowid) From MyPortfolio)");
  return LedgerRowObject(newest, 0);
}

int WholeNumber(std::string_view text) {
  const auto number = ExactNumber<int>(text);
  if (!number || *number < 0) {
    throw std::invalid_argument("\"" + std::string(text) + "\" is not a whole number");
  }
  return *number;
}

std::int32_t DateOf(std::string_view text) {
  if (const auto date = DateFromDigits(text)) return *date;
  throw std::invalid_argument("\"" + std::string(text) + "\" is not a date yyyymmdd");
}

// During a run the setup window is hidden, so this works on controls that the trader can't reach.
void TypeInto(Control& control, std::string_view text) {
  if (auto* picker = dynamic_cast<DatePicker*>(&control)) {
    picker->SetValue(DateOf(text));
  } else if (auto* slider = dynamic_cast<Slider*>(&control)) {
    slider->SetValue(WholeNumber(text));
  } else if (auto* box = dynamic_cast<CheckBox*>(&control)) {
    box->SetChecked(text == "1");
  } else if (dynamic_cast<TextBox*>(&control) != nullptr ||
             dynamic_cast<ComboBox*>(&control) != nullptr) {
    control.SetText(text);
    if (control.on_key_up) control.on_key_up(LastKey(text));
  } else {
    throw std::invalid_argument("nothing can be typed into " + control.Name());
  }
}

}  // namespace

void Replay(const ReplayArguments& given, CliContext& context) {
  ReplayArguments arguments = given;
  if (given.session != 0) {
    LedgerConnection ledger([](std::string_view date) { return std::string(date); });
    LedgerOpenToRead(ledger, given.ledger);
    const LedgerSession session = LedgerReadSession(ledger, given.session).session;
    arguments.directory = session.directory;
    arguments.symbol = session.mask.empty() ? session.symbol : kAnySecurity;
    arguments.interval = session.interval;
    arguments.start = session.start_day;
  }
  ReplayWorld world(arguments, context.cache);
  ReplayDriver(world, context.in, context.out).Run(arguments.session);
}

ReplayDriver::ReplayDriver(ReplayWorld& world, std::istream& in, std::ostream& out)
    : world_(world), in_(in), out_(out) {
  world_.outside.events.SetOnPending([this] { AtFeedLoop(); });
}

void ReplayDriver::Run(int session) {
  try {
    if (session == 0) {
      Begin(world_.Windows().form1.Image3);
    } else {
      Resume(session);
    }
    while (ReadCommand()) Execute();
  } catch (const EndOfInput&) {
    // The run is left as it is.
  }
  if (too_long_) {
    throw std::runtime_error("a command on stdin is longer than " +
                             std::to_string(kLongestCommand) + " bytes");
  }
}

// Called before the feed feeds its next bar.
void ReplayDriver::AtFeedLoop() {
  if (passes_ > 0) {
    --passes_;
    return;
  }
  if (draining_) return;
  AnswerIfDue();
  while (ReadCommand()) {
    const bool loop_goes_on = Execute();
    // A feed that was superseded by another run must return.
    if (loop_goes_on || !world_.program.Feeding()) return;
  }
  throw EndOfInput();
}

bool ReplayDriver::ReadCommand() {
  std::array<char, kLongestCommand + 1> line;
  do {
    in_.getline(line.data(), line.size());
    too_long_ = in_.fail() && !in_.eof();
    if (in_.fail()) return false;
    const std::streamsize end_of_line = in_.eof() ? 0 : 1;
    command_.assign(line.data(), static_cast<std::size_t>(in_.gcount() - end_of_line));
    if (command_.ends_with('\r')) command_.pop_back();
  } while (command_.empty());
  return true;
}

bool ReplayDriver::Execute() {
  Desktop::Windows& windows = world_.Windows();
  const auto [name, rest] = Split(command_);
  answer_due_ = true;
  try {
    if (Control* const button = Named(name, {{"next", &windows.form2.Image1},
                                             {"prev", &windows.form2.Image2},
                                             {"ff", &windows.form2.Image7},
                                             {"rew", &windows.form2.Image6},
                                             {"stop", &windows.form2.Image4},
                                             {"return", &windows.form2.Image5}})) {
      Click(*button);
    } else if (Control* const start = Named(
                   name, {{"play", &windows.form2.Image3}, {"start", &windows.form1.Image3}})) {
      Begin(*start);
    } else if (Control* const order =
                   Named(name, {{"long", &windows.form3.imgLong},
                                {"short", &windows.form3.ImgShort},
                                {"offset-long", &windows.form3.imgOffsetLong},
                                {"offset-short", &windows.form3.ImgOffsetShort}})) {
      Order(*order, rest);
    } else if (name == "plan") {
      Plan(rest);
    } else if (name == "set") {
      Set(rest);
    } else if (name == "figures") {
      world_.figures = LoadResultFigures(world_.ledger);
      figures_asked_ = true;
    } else if (name == "feed") {
      return Feed(rest);
    } else if (name == "pause") {
      return Pause();
    } else {
      throw std::invalid_argument("unknown command \"" + command_ + "\"");
    }
    AnswerIfDue();
  } catch (const std::exception& error) {
    AnswerError(error.what());
  }
  return false;
}

bool ReplayDriver::Feed(std::string_view count) {
  const int passes = count.empty() ? 1 : WholeNumber(count);
  if (passes == 0 || !world_.program.Feeding()) {
    AnswerIfDue();
    return false;
  }
  passes_ = passes - 1;
  return true;
}

bool ReplayDriver::Pause() {
  Click(world_.Windows().form2.Image4);
  draining_ = world_.program.Feeding() && world_.session.StopRequested != 0;
  if (!draining_) AnswerIfDue();
  return draining_;
}

// Returns when the run has ended; the commands of the run are read inside. Answers the last one.
void ReplayDriver::Begin(Control& button) {
  answer_due_ = true;
  Click(button);
  passes_ = 0;
  draining_ = false;
  AnswerIfDue();
}

void ReplayDriver::Resume(int session) {
  answer_due_ = true;
  world_.program.ResumeSession(session);
  AnswerIfDue();
}

void ReplayDriver::Click(Control& button) {
  if (!button.Reachable()) {
    error_ = button.Owner().Name() + "." + button.Name() + " can't be clicked now";
  }
  button.UserClick();
}

void ReplayDriver::Set(std::string_view assignment) {
  const auto [name, text] = Split(assignment);
  Control& control = world_.NamedControl(std::string(name));
  world_.desktop.Load(control.Owner());
  TypeInto(control, text);
}

void ReplayDriver::Plan(std::string_view texts) {
  Desktop::Windows& windows = world_.Windows();
  FrmTicket& ticket = windows.frmTicket;
  Click(windows.form3.imgPlan);
  if (!ticket.Visible()) return;
  try {
    while (!texts.empty()) {
      const bool last = texts.starts_with("reasons=");
      const std::string_view text = last ? texts : Split(texts).first;
      texts = last ? std::string_view() : Split(texts).second;
      const std::string_view name = text.substr(0, text.find('='));
      const std::string_view value = text.substr(std::min(name.size() + 1, text.size()));
      if (name == "for" && (value == "next" || value == "last")) {
        ticket.cboFor.UserChoose(value == "last" ? 1 : 0);
      } else if (Control* const box = Named(name, {{"stop", &ticket.txtStop},
                                                   {"target", &ticket.txtTarget},
                                                   {"setup", &ticket.cboSetup},
                                                   {"confidence", &ticket.cboConfidence},
                                                   {"reasons", &ticket.txtReasons}})) {
        TypeInto(*box, value);
      } else {
        throw std::invalid_argument("a plan has no \"" + std::string(text) + "\"");
      }
    }
  } catch (...) {
    world_.desktop.Unload(ticket);
    throw;
  }
  ticket.cmdKeep.UserClick();
  if (!ticket.Visible()) return;
  error_ = ticket.lblStatus.Text();
  world_.desktop.Unload(ticket);
}

void ReplayDriver::Order(Control& button, std::string_view quantity) {
  world_.Windows().form3.txtContractVol.SetText(quantity);
  rows_before_ = LedgerRowCount(world_.ledger);
  ordered_ = button.Reachable();
  Click(button);
}

void ReplayDriver::AnswerIfDue() {
  if (std::exchange(answer_due_, false)) Answer();
}

void ReplayDriver::Answer() {
  nlohmann::ordered_json answer;
  answer["command"] = command_;
  answer.update(StateOf(world_));
  answer["keys"] = std::exchange(world_.outside.chart.sent, {});
  answer["messages"] = std::exchange(world_.outside.boxes.shown, {});
  AddOrder(answer);
  if (std::exchange(figures_asked_, false)) AddFigures(answer);
  const std::chrono::milliseconds now = world_.outside.events.Now();
  answer["waited"] = (now - std::exchange(answered_at_, now)).count();
  if (!error_.empty()) answer["error"] = std::exchange(error_, {});
  out_ << JsonText(answer) << std::flush;
}

void ReplayDriver::AddOrder(nlohmann::ordered_json& answer) {
  const long rows = LedgerRowCount(world_.ledger);
  const bool ordered = std::exchange(ordered_, false);
  answer["row"] = nullptr;
  if (ordered && rows > rows_before_) answer["row"] = NewestLedgerRow(world_.ledger);
  answer["rows"] = rows;
  answer["result"] = nullptr;
  if (ordered) answer["result"] = OrderResultText(world_.program.LastOrder());
}

void ReplayDriver::AddFigures(nlohmann::ordered_json& answer) {
  for (const ResultFigureText& figure : ResultFigureTexts(world_.figures)) {
    answer[std::string(figure.field)] = figure.text;
  }
}

void ReplayDriver::AnswerError(const std::string& error) {
  answer_due_ = false;
  out_ << JsonText({{"error", error}}) << std::flush;
}

}  // namespace velumar
