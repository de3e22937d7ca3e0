#include "cli/sandbox.h"

#include <fstream>
#include <iterator>
#include <sstream>

#include "base/paths.h"
#include "cli/cli_program.h"
#include "support/scratch_folder.h"

namespace velumar {

namespace fs = std::filesystem;

Sandbox::Sandbox() : folder_(FreshFolder()) {}

Sandbox::~Sandbox() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

std::string Sandbox::At(const std::string& name) const {
  return PathText(folder_ / NativePath(name));
}

std::string Sandbox::File(const std::string& name, const std::string& text) const {
  const fs::path file = folder_ / NativePath(name);
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
  return At(name);
}

std::map<std::string, std::string> Sandbox::Files() const {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
    const bool lock = entry.path().extension() == ".lock";
    if (entry.is_regular_file() && !lock) {
      files[entry.path().lexically_relative(folder_).generic_string()] = BytesOfFile(entry.path());
    }
  }
  return files;
}

Sandbox::Answer Sandbox::Run(const std::vector<std::string>& arguments, const std::string& input) {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  CliContext context{cache_, in, out, err};
  const int code = RunCli(arguments, context);
  return {code, out.str(), err.str()};
}

std::string BytesOfFile(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace velumar
