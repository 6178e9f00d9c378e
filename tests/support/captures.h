// The recordings of real meters that the tests read, from a folder beside the repository; where it
// is absent, the tests that need them are skipped.
#ifndef TESTS_SUPPORT_CAPTURES_H
#define TESTS_SUPPORT_CAPTURES_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace test
{

inline std::filesystem::path CapturesDir()
{
    const char* const named = std::getenv("QUARN_CAPTURES");
    return named != nullptr ? named : QUARN_CAPTURES_DIR;
}

inline std::vector<std::filesystem::path> Captures()
{
    std::vector<std::filesystem::path> files;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(CapturesDir(), none)) {
        if (entry.path().extension() == ".bin")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

inline std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace test

#endif
