#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace velumar {

// The installed Windows program on a virtual desktop of wine, in the prefix of the environment.
class WineDesktop {
 public:
  // `program` is the Windows program's file as Linux names it.
  explicit WineDesktop(const std::string& program);
  // Ends every program of the prefix.
  ~WineDesktop();
  WineDesktop(const WineDesktop&) = delete;
  WineDesktop& operator=(const WineDesktop&) = delete;

  // Whether a program of that file name runs in the prefix, as "velumar.exe".
  static bool Runs(const std::string& name);

 private:
  pid_t pid_ = 0;
};

// What a Windows program writes, line by line, when it is run with these arguments.
std::vector<std::string> WineAnswer(const std::string& arguments);

// "/tmp/x" as Windows programs name it there.
std::string WindowsPath(const std::string& path);

}  // namespace velumar
