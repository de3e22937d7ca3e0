// velumar_bench_directory FOLDER SECURITIES BARS: creates a directory for measuring the start of
// the program. The first security has BARS bars, all others ten.

#include <filesystem>
#include <iostream>
#include <string>

#include "large_directory.h"

int main(int argc, char** argv) {
  try {
    if (argc != 4)
      throw std::invalid_argument("usage: velumar_bench_directory FOLDER SECURITIES BARS");
    const velumar::LargeDirectory made(std::stoi(argv[2]), std::stoi(argv[3]), 10);
    std::filesystem::copy(made.Path(), argv[1]);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
  return 0;
}
