#include <gtest/gtest.h>

#include <stdexcept>

#include "app/wiring/options.h"

namespace velumar {
namespace {

QStringList CommandLine(const char* arguments) {
  return (QStringLiteral("velumar ") + QLatin1String(arguments))
      .split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

TEST(OptionsTest, TakesWhatItKnows) {
  const Options options =
      ReadOptions(CommandLine("--settings-dir /s --theme dark --play 20 --screenshot-dir out "
                              "--chart-argument --state --chart-argument=-x"));
  EXPECT_EQ(options.settings_dir, QStringLiteral("/s"));
  EXPECT_EQ(options.theme, ThemeChoice::kDark);
  EXPECT_EQ(options.play, 20);
  EXPECT_EQ(options.screenshot_dir, QStringLiteral("out"));
  EXPECT_EQ(options.chart_arguments, (std::vector<std::string>{"--state", "-x"}));
  EXPECT_FALSE(ReadOptions(CommandLine("")).PlaysAlone());
}

TEST(OptionsTest, NamesWhatItCannotTake) {
  const struct {
    const char* arguments;
    const char* named;
  } rows[] = {{"--theme pink", "pink"},
              {"--play 0 --screenshot-dir o", "--play 0"},
              {"--play 5", "--screenshot-dir"},
              {"data", "data"},
              {"--settings-dir", "settings-dir"}};
  for (const auto& row : rows) {
    try {
      ReadOptions(CommandLine(row.arguments));
      ADD_FAILURE() << row.arguments << " was taken";
    } catch (const std::invalid_argument& error) {
      EXPECT_NE(std::string(error.what()).find(row.named), std::string::npos) << error.what();
    }
  }
}

}  // namespace
}  // namespace velumar
