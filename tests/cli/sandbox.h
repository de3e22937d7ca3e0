#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "marketdata/index_cache.h"

namespace velumar {

// A folder of its own for one test, gone with the object, and the program run inside it.
class Sandbox {
 public:
  Sandbox();
  ~Sandbox();
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  // A file or folder of the sandbox.
  std::string At(const std::string& name) const;
  // Writes a file of the sandbox and answers its path.
  std::string File(const std::string& name, const std::string& text) const;
  // Every file below the sandbox with its bytes, locks left out.
  std::map<std::string, std::string> Files() const;

  struct Answer {
    int code = -1;
    std::string out;
    std::string err;
  };
  Answer Run(const std::vector<std::string>& arguments, const std::string& input = "");

 private:
  std::filesystem::path folder_;
  IndexCache cache_;
};

std::string BytesOfFile(const std::filesystem::path& file);

}  // namespace velumar
