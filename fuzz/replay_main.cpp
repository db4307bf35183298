// A fuzzer's entry point run once on every file it is given, without libFuzzer: the regression
// inputs and seed corpora replay under every compiler and build type. Folders are read in name
// order; a fuzzer that finds a fault aborts, which fails the test.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool replay(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    std::fprintf(stderr, "cannot read %s\n", file.c_str());
    return false;
  }
  const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::fprintf(stderr, "replaying %s (%zu bytes)\n", file.c_str(), bytes.size());
  // A copy of exactly the input's size, so that AddressSanitizer catches a read past its end.
  std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.empty() ? nullptr : input.data(), input.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path(argv[i]);
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(path)) {
      for (const auto& entry : std::filesystem::directory_iterator(path)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
      }
      std::sort(files.begin(), files.end());
    } else if (std::filesystem::exists(path)) {
      files.push_back(path);
    } else {
      std::fprintf(stderr, "no such file or folder: %s\n", argv[i]);
      return 1;
    }
    for (const auto& file : files) {
      if (!replay(file)) return 1;
      ++count;
    }
  }
  std::fprintf(stderr, "replayed %zu inputs\n", count);
  return 0;
}
