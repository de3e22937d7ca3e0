#include "shell/score_board.h"

#include <utility>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr std::string_view kScoresTarget = "/zanno/getscore.php";
constexpr std::string_view kPostTarget = "/zanno/postscore.php?";
constexpr std::string_view kLineEnd = "\r\n";
constexpr int kEnterKey = 13;

// What would end the line that a name travels in.
bool EndsALine(char character) {
  return character == '\r' || character == '\n' || character == '\0';
}

std::vector<std::string> Lines(std::string_view answer) {
  std::vector<std::string> lines;
  if (answer.empty()) return lines;
  for (std::size_t end = answer.find(kLineEnd); end != std::string_view::npos;
       end = answer.find(kLineEnd)) {
    lines.emplace_back(answer.substr(0, end));
    answer.remove_prefix(end + kLineEnd.size());
  }
  lines.emplace_back(answer);
  return lines;
}

}  // namespace

ScoreBoard::ScoreBoard(const SimSession& session, Desktop& desktop, Platform& platform)
    : session_(session), desktop_(desktop), platform_(platform) {
  FrmScore& form = desktop_.Untouched().frmScore;
  const auto guarded = [this](auto handler) { return Guarded(platform_.boxes, handler); };
  form.on_load = guarded([this] { Load(); });
  form.on_close = form.on_escape = form.Image5.on_click =
      guarded([this] { desktop_.Unload(Window()); });
  form.on_press = form.Image1.on_press = form.Frame2.on_press =
      guarded([this] { DragWindow(Window()); });
  form.txtName.on_change = guarded([this] { NameChanged(); });
  form.txtName.on_key_up = guarded([this](int key) {
    if (key == kEnterKey) SendScore();
  });
  form.btnSend.on_click = guarded([this] { SendScore(); });
}

void ScoreBoard::Open() {
  Window().Show();
  RefreshTopScores();
}

void ScoreBoard::Load() {
  FrmScore& form = Window();
  ++load_;
  form.txtScore.SetText(PlainNumberText(session_.Portfolio));
  form.txtScore.SetEnabled(false);
  form.lblPlace.SetText(platform_.settings.Place());
  ExplainAddress(Address().empty());
  form.SetTopmost(true);
  RoundWindow(form, kCornerWidth, kCornerHeight);
  CentreOnScreen(form, platform_.screen);
}

std::string ScoreBoard::Address() const {
  return Trimmed(platform_.settings.ReadFrom("Score", "Address").value_or(""));
}

void ScoreBoard::ExplainAddress(bool missing) {
  FrmScore& form = Window();
  form.List1.SetVisible(!missing);
  for (Label* line : {&form.lblHelp1, &form.lblHelp2, &form.lblPlace, &form.lblHelp3,
                      &form.lblHelp4, &form.lblHelp5}) {
    line->SetVisible(missing);
  }
}

void ScoreBoard::RefreshTopScores() {
  const bool missing = Address().empty();
  ExplainAddress(missing);
  if (missing) return;
  const std::optional<std::string> answer = Ask(kScoresTarget, "Fetching the scores...", "");
  if (!answer) return;
  FrmScore& form = Window();
  form.List1.SetLines(Lines(*answer));
  if (answer->empty() && form.lblStatus.Text().empty()) {
    form.lblStatus.SetText("There are no scores yet.");
  }
}

void ScoreBoard::SendScore() {
  Label& status = Window().lblStatus;
  if (session_.StartDate.empty() || session_.CurrentDate.empty()) {
    status.SetText("Nothing sent: no bar of a run has been played yet.");
  } else if (Address().empty()) {
    status.SetText("Nothing sent: no score service is set.");
  } else {
    Ask(std::string(kPostTarget) + Query(), "Sending...", "Sent.");
  }
}

std::string ScoreBoard::Query() {
  FrmScore& form = Window();
  return "username=" + form.txtName.Text() + "&score=" + form.txtScore.Text() +
         "&zanno=yes&symbol=" + session_.Run.symbol + "&startdate=" + session_.StartDate +
         "&enddate=" + session_.CurrentDate;
}

std::optional<std::string> ScoreBoard::Ask(std::string_view target, std::string_view meanwhile,
                                           std::string_view afterwards) {
  FrmScore& form = Window();
  const int load = load_;
  if (asking_load_ == load) return std::nullopt;
  const int before = std::exchange(asking_load_, load);
  const auto wanted = [&] { return load == load_ && form.Loaded(); };
  std::string answer;
  std::string status(afterwards);
  form.lblStatus.SetText(meanwhile);
  form.btnSend.SetEnabled(false);
  try {
    answer = platform_.web.Get(Address(), target, wanted);
  } catch (const std::exception& error) {
    status = std::string("Failed: ") + error.what() + ".";
  }
  asking_load_ = before;
  if (!wanted()) return std::nullopt;
  form.lblStatus.SetText(status);
  form.btnSend.SetEnabled(true);
  return answer;
}

void ScoreBoard::NameChanged() {
  FrmScore& form = Window();
  std::string name = form.txtName.Text();
  if (std::erase_if(name, EndsALine) == 0) return;
  form.txtName.SetText(name);
  form.lblStatus.SetText("A name is one line: the line ends in it were left out.");
}

}  // namespace velumar
