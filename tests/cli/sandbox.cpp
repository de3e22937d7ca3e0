#include "cli/sandbox.h"

#include <sstream>

#include "cli/commands.h"

namespace velumar {

std::string Sandbox::File(const std::string& name, const std::string& text) const {
  std::filesystem::create_directories(std::filesystem::path(At(name)).parent_path());
  WriteFile(At(name), text);
  return At(name);
}

std::string Sandbox::ImportDays(const std::string& directory, const std::string& fraction) {
  std::string csv = "date,open,high,low,close\n";
  for (int day = 1; day <= 28; ++day) {
    const std::string price = "," + std::to_string(100 + day) + fraction;
    csv += std::to_string(20000100 + day) + price + price + price + price + "\n";
  }
  EXPECT_EQ(Run({"import", File("ABC_D.csv", csv), At(directory)}).code, 0);
  return At(directory);
}

std::vector<std::string> Sandbox::Answer::Lines() const {
  std::vector<std::string> lines;
  std::istringstream in(out);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::vector<nlohmann::json> Sandbox::Answer::Objects() const {
  std::vector<nlohmann::json> objects;
  for (const std::string& line : Lines()) objects.push_back(nlohmann::json::parse(line));
  return objects;
}

Sandbox::Answer Sandbox::Run(const std::vector<std::string>& arguments, const std::string& input) {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  CliContext context{cache_, in, out, err};
  const int code = RunCli(arguments, context);
  return {code, out.str(), err.str()};
}

}  // namespace velumar
