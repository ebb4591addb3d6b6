// SPDX-License-Identifier: MIT
// Runs a fuzzer's entry over every file of the given folders, so that inputs found once are tested in every
// configuration.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

void replay(const std::filesystem::path &file) {
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    std::vector<std::uint8_t> data(bytes.size());
    std::transform(bytes.begin(), bytes.end(), data.begin(), [](char byte) { return static_cast<std::uint8_t>(byte); });
    LLVMFuzzerTestOneInput(data.data(), data.size());
}

int replayFolders(int count, char **folders) {
    int files = 0;
    for (int i = 0; i < count; ++i) {
        for (const auto &entry : std::filesystem::directory_iterator(folders[i])) {
            if (entry.is_regular_file()) {
                // Named first: after a crash the last line says which input it was.
                std::printf("%s\n", entry.path().string().c_str());
                std::fflush(stdout);
                replay(entry.path());
                ++files;
            }
        }
    }
    std::printf("%d inputs replayed\n", files);
    return files > 0 ? 0 : 1;
}

} // namespace

int main(int argc, char **argv) {
    try {
        return replayFolders(argc - 1, argv + 1);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
