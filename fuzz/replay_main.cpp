// Runs the fuzz entry point over files, without libFuzzer: each argument is a
// file or a folder whose files (sorted, not recursive) are run in turn. This
// is how the ordinary build replays the seed corpus and every kept finding
// with any compiler. A fault shows as a crash or a sanitizer report; finding
// no input at all fails too, so that a wrong folder cannot pass unnoticed.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> inputsIn(const std::filesystem::path& argument) {
    if (!std::filesystem::is_directory(argument)) return {argument};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argument)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        std::cerr << file.string() << ": cannot read\n";
        return false;
    }
    std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::cerr << "replaying " << file.string() << '\n';
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& file : inputsIn(argv[i])) {
            if (!replay(file)) return 1;
            ++replayed;
        }
    }
    std::cout << "replayed " << replayed << " inputs\n";
    return replayed == 0 ? 1 : 0;
}
