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
constexpr std::string_view kAddressKey = "ScoreAddress";
constexpr std::string_view kNameKey = "ScoreName";

// Characters that would end the request line.
bool IsLineEnd(char character) {
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

// Adds the first line of the service's answer, unless that is too long or just confirms the score.
std::string SentText(std::string_view answer) {
  constexpr std::size_t kLongestRemark = 120;
  const std::string_view remark = answer.substr(0, answer.find_first_of("\r\n"));
  const bool plain = remark.empty() || remark == "Accepted." || remark.size() > kLongestRemark;
  return plain ? "Sent." : "Sent. The service says: " + std::string(remark);
}

}  // namespace

ScoreBoard::ScoreBoard(const SimSession& session, Desktop& desktop, Platform& platform)
    : session_(session), desktop_(desktop), platform_(platform) {
  FrmScore& form = desktop_.Untouched().frmScore;
  const EventGuard guarded(platform_.boxes);
  form.on_load = guarded("Opening the score board", [this] { Load(); });
  form.on_close = form.on_escape = form.Image5.on_click =
      guarded("Closing the score board", [this] { desktop_.Unload(Window()); });
  form.on_press = form.Image1.on_press = form.Frame2.on_press =
      guarded("Moving the score board", [this] { Window().StartDrag(); });
  form.txtName.on_change = guarded("Reading the name", [this] { NameChanged(); });
  form.txtName.on_key_up = guarded("Sending the score", [this](int key) {
    if (key == kEnterKey) SendScore();
  });
  form.on_unload = form.txtAddress.on_leave =
      guarded("Saving the address", [this] { SaveAddress(); });
  form.txtAddress.on_key_up = guarded("Fetching the scores", [this](int key) {
    if (key != kEnterKey) return;
    SaveAddress();
    RefreshTopScores();
  });
  form.btnSend.on_click = guarded("Sending the score", [this] { SendScore(); });
}

void ScoreBoard::Open() {
  Window().Show();
  RefreshTopScores();
}

void ScoreBoard::Load() {
  FrmScore& form = Window();
  ++load_;
  form.txtScore.SetText(ReadableNumberText(session_.Portfolio));
  form.txtScore.SetEnabled(false);
  form.txtName.SetText(platform_.settings.Read(kNameKey).value_or(""));
  form.txtAddress.SetText(Address());
  ExplainAddress();
  ShapeSmallWindow(form);
  CentreOnScreen(form, platform_.screen);
}

std::string ScoreBoard::Address() const {
  const std::string typed = Trimmed(platform_.settings.Read(kAddressKey).value_or(""));
  if (!typed.empty()) return typed;
  return Trimmed(platform_.settings.ReadFrom("Score", "Address").value_or(""));
}

void ScoreBoard::SaveAddress() {
  const std::string typed = Trimmed(Window().txtAddress.Text());
  if (typed != Address()) platform_.settings.Save(kAddressKey, typed);
  ExplainAddress();
}

void ScoreBoard::ExplainAddress() {
  FrmScore& form = Window();
  const bool missing = Address().empty();
  form.List1.SetVisible(!missing);
  for (Label* line : {&form.lblHelp1, &form.lblHelp2, &form.lblHelp3}) line->SetVisible(missing);
}

void ScoreBoard::RefreshTopScores() {
  ExplainAddress();
  if (!Address().empty()) ListScores("");
}

// Then shows `status`, and why there is no list if there is none.
void ScoreBoard::ListScores(const std::string& status) {
  const std::optional<Answer> answer = Ask(kScoresTarget, "Fetching the scores...");
  if (!answer) return;
  Window().List1.SetLines(answer->failed ? std::vector<std::string>() : Lines(answer->text));
  if (answer->failed) {
    ShowStatus(status + (status.empty() ? "" : " ") +
               "The scores could not be read: " + answer->text);
  } else if (answer->text.empty() && status.empty()) {
    ShowStatus("There are no scores yet.");
  } else {
    ShowStatus(status);
  }
}

void ScoreBoard::SendScore() {
  SaveAddress();
  if (session_.StartDate.empty() || session_.CurrentDate.empty()) {
    ShowStatus("Not sent: play a run first.");
    return;
  }
  if (Address().empty()) {
    ShowStatus("Not sent: no score service is set.");
    return;
  }
  platform_.settings.Save(kNameKey, Window().txtName.Text());
  const std::optional<Answer> answer = Ask(std::string(kPostTarget) + Query(), "Sending...");
  if (!answer) return;
  if (answer->failed) {
    ShowStatus("Not sent: " + answer->text);
  } else {
    ListScores(SentText(answer->text));
  }
}

std::string ScoreBoard::Query() {
  FrmScore& form = Window();
  return "username=" + form.txtName.Text() + "&score=" + form.txtScore.Text() +
         "&zanno=yes&symbol=" + session_.Run.symbol + "&startdate=" + session_.StartDate +
         "&enddate=" + session_.CurrentDate;
}

std::optional<ScoreBoard::Answer> ScoreBoard::Ask(std::string_view target,
                                                  std::string_view status) {
  FrmScore& form = Window();
  const int load = load_;
  if (asking_load_ == load) return std::nullopt;
  const int before = std::exchange(asking_load_, load);
  const auto wanted = [&] { return load == load_ && form.Loaded(); };
  Answer answer;
  ShowStatus(status);
  form.btnSend.SetEnabled(false);
  try {
    answer.text = platform_.web.Get(Address(), target, wanted);
  } catch (const std::exception& error) {
    answer = {true, std::string(error.what()) + "."};
  }
  asking_load_ = before;
  if (!wanted()) return std::nullopt;
  form.btnSend.SetEnabled(true);
  return answer;
}

void ScoreBoard::NameChanged() {
  FrmScore& form = Window();
  std::string name = form.txtName.Text();
  if (std::erase_if(name, IsLineEnd) == 0) return;
  form.txtName.SetText(name);
  form.lblStatus.SetText("Line breaks in the name were removed.");
}

}  // namespace velumar
