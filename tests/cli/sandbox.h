#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "marketdata/index_cache.h"
#include "support/scratch_folder.h"

namespace velumar {

// A folder for one test, and velumar-cli run inside it.
class Sandbox {
 public:
  // The path of a file or folder in the sandbox.
  std::string At(const std::string& name) const { return folder_.Sub(name); }
  // Writes a file in the sandbox and returns its path.
  std::string File(const std::string& name, const std::string& text) const;
  // Imports daily bars of "ABC" into a directory and returns its path: 28 days from 2000-01-01,
  // closes 101 and up, plus `fraction`.
  std::string ImportDays(const std::string& directory, const std::string& fraction = "");

  struct Answer {
    int code = -1;
    std::string out;
    std::string err;

    std::vector<std::string> Lines() const;       // of `out`
    std::vector<nlohmann::json> Objects() const;  // one per line of `out`
  };
  Answer Run(const std::vector<std::string>& arguments, const std::string& input = "");

 private:
  ScratchFolder folder_;
  IndexCache cache_;
};

}  // namespace velumar
