#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "ledger/ledger.h"
#include "support/scratch.h"

namespace velumar {
namespace {

// The answers of a replay that are complete.
std::vector<nlohmann::json> Answers(const std::filesystem::path& file) {
  std::vector<nlohmann::json> answers;
  std::istringstream text(ReadFile(file));
  for (std::string line; std::getline(text, line) && !text.eof();) {
    answers.push_back(nlohmann::json::parse(line));
  }
  return answers;
}

// Replays orders and kills velumar-cli at some moment after `before_kill` of them.
void KillAReplay(const ScratchFolder& scratch, std::size_t before_kill, useconds_t pause) {
  WriteFile(scratch / "answers", "");
  const pid_t process = fork();
  if (process == 0) {
    std::freopen(scratch.Sub("commands").c_str(), "r", stdin);
    std::freopen(scratch.Sub("answers").c_str(), "w", stdout);
    execl(VELUMAR_CLI_PROGRAM, VELUMAR_CLI_PROGRAM, "replay", scratch.Sub("data").c_str(), "ABC",
          "D", "20000201", "--store", scratch.Sub("store").c_str(), "--ledger",
          scratch.Sub("Portfolio.mdb").c_str(), nullptr);
    _exit(127);
  }
  for (int wait = 0; wait < 5000 && Answers(scratch / "answers").size() <= before_kill; ++wait) {
    usleep(1000);
  }
  usleep(pause);
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

TEST(Kill, LeavesEveryAnsweredOrderInTheLedger) {
  const ScratchFolder scratch;
  IndexCache cache;
  StoreSecurity(scratch.Sub("data"), {"ABC", "Abc", -1}, DailyBars(100), cache);
  std::string commands;
  for (int i = 0; i < 5000; ++i) commands += "long 1\nlong 1\noffset-long 1\noffset-long 1\n";
  WriteFile(scratch / "commands", commands);
  std::mt19937_64 random(7);
  for (int round = 0; round < 15; ++round) {
    KillAReplay(scratch, random() % 24, static_cast<useconds_t>(random() % 6000));
    const std::vector<nlohmann::json> answers = Answers(scratch / "answers");
    ASSERT_FALSE(answers.empty()) << "the run starts";
    LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
    LedgerOpenToRead(ledger, scratch.Sub("Portfolio.mdb"));
    const auto rows =
        LedgerQuery(ledger, "select Position, LAccum, Portfolio From MyPortfolio").rows;
    ASSERT_GE(rows.size(), answers.size() - 1);
    ASSERT_LE(rows.size(), answers.size());
    for (std::size_t i = 0; i + 1 < answers.size(); ++i) {
      const nlohmann::json& row = answers[i + 1].at("row");
      EXPECT_EQ(std::get<std::string>(rows[i][0]), row["Position"]);
      EXPECT_EQ(std::get<double>(rows[i][1]), std::stod(row["LAccum"].get<std::string>()));
      EXPECT_EQ(std::get<double>(rows[i][2]), std::stod(row["Portfolio"].get<std::string>()));
    }
    EXPECT_EQ(std::get<std::string>(LedgerQuery(ledger, "PRAGMA integrity_check").rows[0][0]),
              "ok");
  }
}

}  // namespace
}  // namespace velumar
