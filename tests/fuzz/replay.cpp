// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// replay FOLDER...: works on every file of the folders, in the order of their names, without a fuzzing engine. The
// first folder holds the corpus and may not be empty.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char *argv[])
{
    std::vector<std::filesystem::path> paths;
    for (int index = 1; index < argc; ++index) {
        if (std::filesystem::is_directory(argv[index])) {
            for (const auto &entry : std::filesystem::directory_iterator(argv[index])) {
                paths.push_back(std::filesystem::absolute(entry.path()));
            }
        }
        if (paths.empty()) {
            std::fprintf(stderr, "no input in %s\n", argv[index]);
            return 1;
        }
    }
    std::sort(paths.begin(), paths.end());

    LLVMFuzzerInitialize(&argc, &argv); // changes the working directory
    for (const std::filesystem::path &path : paths) {
        std::ifstream file(path, std::ios::binary);
        const std::string input{std::istreambuf_iterator<char>(file), {}};
        if (!file) {
            std::fprintf(stderr, "%s cannot be read\n", path.c_str());
            return 1;
        }
        std::printf("%s, %zu bytes\n", path.c_str(), input.size());
        std::fflush(stdout); // the last line names the input that ends the process
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(input.data()), input.size());
    }
    std::printf("%zu inputs\n", paths.size());
    return paths.empty() ? 1 : 0;
}
