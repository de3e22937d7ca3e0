#include "packed_files.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "support/scratch_folder.h"

namespace velumar {

namespace {

constexpr std::array<std::string_view, 9> kNames = {
    "MASTER", "EMASTER", "XMASTER", "F1.DAT", "F2.DAT", "F256.MWD", "F1.DOP", "Master", "f1.dat"};

unsigned Byte(char value) { return static_cast<unsigned char>(value); }

}  // namespace

std::string PackFiles(const std::filesystem::path& folder) {
  constexpr std::size_t kMost = 65535;
  std::string packed;
  for (std::size_t name = 0; name < kNames.size(); ++name) {
    std::ifstream in(folder / kNames[name], std::ios::binary);
    if (!in) continue;
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    bytes.resize(std::min(bytes.size(), kMost));
    packed += static_cast<char>(name);
    packed += static_cast<char>(bytes.size() % 256);
    packed += static_cast<char>(bytes.size() / 256);
    packed += bytes;
  }
  return packed;
}

void UnpackFiles(std::string_view packed, const std::filesystem::path& folder) {
  while (packed.size() > 3) {
    const std::string_view name = kNames[Byte(packed[0]) % kNames.size()];
    const std::size_t size = Byte(packed[1]) + 256 * Byte(packed[2]);
    const std::string_view bytes = packed.substr(3, size);
    WriteFile(folder / name, bytes);
    packed.remove_prefix(3 + bytes.size());
  }
}

}  // namespace velumar
