#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <optional>
#include <string>

#include "base/dates.h"

// Options that several commands have. For command_line.cpp and import_options.cpp only: the headers
// of CLI11 take seconds to compile.

namespace velumar {

inline std::string DayProblem(const std::string& text) {
  return DateFromDigits(text) ? "" : "a day is yyyymmdd, not " + text;
}

// `day` is a number yyyymmdd, or an optional one.
template <typename Day>
CLI::Option* AddDay(CLI::App& command, const std::string& flag, Day& day, const std::string& help) {
  return command.add_option(flag, day, help)->check(DayProblem)->type_name("DATE");
}

// An option for one of several words.
template <typename Value>
void AddChoice(CLI::App& command, const std::string& flag, std::optional<Value>& choice,
               const std::map<std::string, Value>& values, const std::string& help) {
  command
      .add_option_function<std::string>(
          flag, [&choice, values](const std::string& given) { choice = values.at(given); }, help)
      ->check(CLI::IsMember(values));
}

}  // namespace velumar
