#include "platform/system.h"

#include <algorithm>
#include <array>

#include "base/paths.h"
#include "platform/chart_program.h"

namespace velumar {

namespace {

std::size_t ProgramLength(std::string_view command_line) {
  const std::size_t at = command_line.rfind(kChartProgramFile);
  if (at != std::string_view::npos) return at + kChartProgramFile.size();
  return std::min(command_line.find(' '), command_line.size());
}

std::vector<std::string> SplitAtBlanks(std::string_view text) {
  std::vector<std::string> words;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.empty()) return words;
    const std::size_t end = std::min(text.find(' '), text.size());
    words.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
}

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view command_line) {
  std::size_t length = ProgramLength(command_line);
  std::string_view program = command_line.substr(0, length);
  if (program.starts_with('"')) {
    program.remove_prefix(1);
    const std::size_t close = command_line.find('"', 1);
    length = close == std::string_view::npos ? command_line.size() : close + 1;
    program = command_line.substr(1, std::min(close, command_line.size()) - 1);
  }
  std::vector<std::string> words = SplitAtBlanks(command_line.substr(length));
  words.insert(words.begin(), PathText(NativePath(program)));
  return words;
}

bool AsksForHelp(int argument_count, const char* const* arguments) {
  constexpr std::array<std::string_view, 5> kQuestions = {"-h", "--help", "--help-all", "-v",
                                                          "--version"};
  return std::any_of(arguments, arguments + argument_count, [&](std::string_view argument) {
    return std::ranges::find(kQuestions, argument) != kQuestions.end();
  });
}

}  // namespace velumar
