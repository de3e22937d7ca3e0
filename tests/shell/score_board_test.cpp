#include "support/whole_program.h"

namespace velumar {
namespace {

struct ScoreBoardTest : testing::Test {
  ScoreBoardTest() {
    all.outside.settings.texts["Score/Address"] = "scores.example:8080";
    all.session.Run.symbol = "ABC";
    all.session.Portfolio = -1234.5F;
    all.session.StartDate = "20050103";
    all.session.CurrentDate = "20050630";
    Press();
    EXPECT_FALSE(Board().Loaded());  // keys mean something only in a run
    all.windows.form2.Show();
  }
  FrmScore& Board() { return all.windows.frmScore; }
  ScriptedWeb& Web() { return all.outside.web; }
  void Press() { all.program.Keys().Press({.code = run_key::kBoard}); }
  // Opens the board on a service that answers so.
  void Open(const std::string& answer) {
    Web().answers = {answer};
    Press();
    Web().asked.clear();
  }

  WholeProgram all{"/nowhere"};
};

TEST_F(ScoreBoardTest, ListsTheScoresAndSendsTheBoxes) {
  Open("one\r\n\r\n a\nb\r");
  EXPECT_THAT(Board().List1.Lines(), ElementsAre("one", "", " a\nb\r"));
  Press();  // nobody answers now
  EXPECT_THAT(Web().asked, ElementsAre("scores.example:8080/zanno/getscore.php"));
  EXPECT_THAT(Board().List1.Lines(), IsEmpty());
  EXPECT_THAT(Board().lblStatus.Text(), HasSubstr("The scores could not be read: "));
  Web().asked.clear();
  const std::string target =
      "scores.example:8080/zanno/postscore.php?username=A "
      "b&c=%?#&score=-1234.5&zanno=yes&symbol=ABC&"
      "startdate=20050103&enddate=20050630";
  all.session.Portfolio = 99;  // the box keeps the value of its opening
  Board().txtName.UserType("A b&c=%?#\r\n");
  EXPECT_THAT(Board().lblStatus.Text(), HasSubstr("Line breaks"));
  Web().answers = {"Accepted.", "1. A b\r\n2. C"};
  Board().btnSend.UserClick();
  EXPECT_EQ(Board().lblStatus.Text(), "Sent.");
  EXPECT_THAT(Board().List1.Lines(), ElementsAre("1. A b", "2. C")) << "the list is read again";
  Board().txtName.UserKeyUp(13);
  EXPECT_THAT(Board().lblStatus.Text(), HasSubstr("Not sent: there is no network."));
  EXPECT_THAT(Web().asked, ElementsAre(target, HasSubstr("getscore"), target));
  Web().answers = {"Not among the best.\r\nmore", "1. C"};
  Board().btnSend.UserClick();
  EXPECT_EQ(Board().lblStatus.Text(), "Sent. The service says: Not among the best.");
  Web().asked.clear();
  all.session.StartDate.clear();
  Board().btnSend.UserClick();
  EXPECT_THAT(Web().asked, IsEmpty()) << "before the first run";

  Board().on_escape();
  Press();
  EXPECT_EQ(Board().txtName.Text(), "A b&c=%?#") << "the name is remembered";
}

TEST_F(ScoreBoardTest, TakesItsAddressFromTheWindowOrTheSettingsFile) {
  all.outside.settings.texts.clear();
  Press();
  EXPECT_TRUE(Board().lblHelp1.Visible());
  Board().txtAddress.UserType(" http://a ");
  Web().answers = {"x"};
  Board().txtAddress.UserKeyUp(13);
  EXPECT_FALSE(Board().lblHelp1.Visible());
  EXPECT_THAT(Web().asked, ElementsAre("http://a/zanno/getscore.php"));
  all.outside.settings.texts["Score/Address"] = "http://file";
  Board().txtAddress.UserType("http://b");
  Board().Image5.UserClick();
  Open("");
  EXPECT_EQ(Board().txtAddress.Text(), "http://b") << "kept without Enter too";
  Board().txtAddress.UserType("");
  Board().txtAddress.UserLeave();
  Board().Image5.UserClick();
  Open("");
  EXPECT_EQ(Board().txtAddress.Text(), "http://file");
  Board().Image5.UserClick();
  EXPECT_EQ(all.outside.settings.texts["ScoreAddress"], "") << "the file's own may change";
}

// Clicks run during a request: a second request is ignored, closing cancels the request, and an
// answer for a window that was closed and opened again doesn't change the new one.
TEST_F(ScoreBoardTest, HandlesClicksDuringARequest) {
  Open("old");
  Web().answers = {"taken", "list"};
  Web().during_request = [this] {
    Web().during_request = nullptr;
    EXPECT_EQ(Board().lblStatus.Text(), "Sending...");
    EXPECT_FALSE(Board().btnSend.Enabled());
    Board().txtName.UserKeyUp(13);
  };
  Board().btnSend.UserClick();
  EXPECT_EQ(Web().asked.size(), 2);
  EXPECT_THAT(Board().lblStatus.Text(), HasSubstr("Sent."));
  EXPECT_TRUE(Board().btnSend.Enabled());

  Web().during_request = [this] {
    Web().during_request = nullptr;
    Board().Image5.UserClick();
    Open("new");
  };
  Board().btnSend.UserClick();
  EXPECT_THAT(Board().List1.Lines(), ElementsAre("new"));
  EXPECT_EQ(Board().lblStatus.Text(), "");

  Web().during_request = [this] { Board().on_escape(); };
  Board().btnSend.UserClick();
  EXPECT_FALSE(Board().Loaded());
  EXPECT_THAT(all.outside.boxes.shown, IsEmpty());
}

}  // namespace
}  // namespace velumar
