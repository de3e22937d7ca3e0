#pragma once

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/commands.h"
#include "marketdata/index_cache.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {

// A folder for one test, and velumar-cli run inside it.
class Sandbox {
 public:
  struct Answer {
    int code = -1;
    std::string out;
    std::string err;

    std::vector<std::string> Lines() const {  // of `out`
      std::vector<std::string> lines;
      std::istringstream in(out);
      for (std::string line; std::getline(in, line);) lines.push_back(line);
      return lines;
    }
    std::vector<nlohmann::json> Objects() const {  // one per line of `out`
      std::vector<nlohmann::json> objects;
      for (const std::string& line : Lines()) objects.push_back(nlohmann::json::parse(line));
      return objects;
    }
  };

  explicit Sandbox(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
      : folder_(parent) {}

  // The path of a file or folder in the sandbox.
  std::string At(const std::string& name) const { return folder_.Sub(name); }
  // Writes a file in the sandbox and returns its path.
  std::string File(const std::string& name, const std::string& text) const {
    folder_.Write(name, text);
    return At(name);
  }
  Answer Run(const std::vector<std::string>& arguments, const std::string& input = "") {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    CliContext context{cache_, in, out, err};
    const int code = RunCli(arguments, context);
    return {code, out.str(), err.str()};
  }
  // Imports daily bars of "ABC" into a directory and returns its path: 28 days from 2000-01-01,
  // closes 101 and up, plus `fraction`.
  std::string ImportDays(const std::string& directory, const std::string& fraction = "") {
    std::string csv = "date,open,high,low,close\n";
    for (int day = 1; day <= 28; ++day) {
      const std::string price = "," + std::to_string(100 + day) + fraction;
      csv += std::to_string(20000100 + day) + price + price + price + price + "\n";
    }
    EXPECT_EQ(Run({"import", File("ABC_D.csv", csv), At(directory)}).code, 0);
    return At(directory);
  }

 private:
  ScratchFolder folder_;
  IndexCache cache_;
};

}  // namespace velumar
