#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace velumar {

// The processes of a program's file name, as "MSWIN.EXE", whose environment has `variable`, as
// "HOME=/root": others on this machine may run the same program.
std::vector<pid_t> ProcessesOf(const std::string& name, const std::string& variable);

// Kills them as a crash would.
void KillProcesses(const std::string& name, const std::string& variable);

// What a command of the shell prints, line by line and without carriage returns.
std::vector<std::string> OutputOf(const std::string& command);

}  // namespace velumar
