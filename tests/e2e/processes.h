#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace velumar {

// The processes of a program's file name, as "MSWIN.EXE", whose environment has `variable`, as
// "HOME=/root": others on this machine may run the same program.
std::vector<pid_t> ProcessesOf(const std::string& name, const std::string& variable);

// As a crash ends them, without a word to them.
void KillProcesses(const std::string& name, const std::string& variable);

}  // namespace velumar
