// Runs a target over inputs without a fuzzer: those in the files and folders named, and random
// ones.
//
//   replay_TARGET [--random COUNT SIZE] [FILE|FOLDER...]
#include "fuzz/input.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

namespace
{

void Run(const std::string& name, const std::string& bytes)
{
    std::fprintf(stderr, "%s\n", name.c_str()); // the last one is that of a finding
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

void RunFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    fuzz::Require(file.is_open(), "the file can be read", path);
    Run(path, std::string(std::istreambuf_iterator<char>(file), {}));
}

// Of up to size bytes.
void RunRandom(unsigned count, unsigned size)
{
    for (unsigned seed = 0; seed < count; ++seed) {
        std::mt19937 random(seed);
        std::string bytes(random() % (size + 1), 0);
        for (char& c : bytes)
            c = static_cast<char>(random());
        Run("random " + std::to_string(seed), bytes);
    }
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.size() >= 3 && args[0] == "--random") {
        RunRandom(static_cast<unsigned>(std::stoul(args[1])),
                  static_cast<unsigned>(std::stoul(args[2])));
        args.erase(args.begin(), args.begin() + 3);
    }
    for (const std::filesystem::path path : args) {
        if (!std::filesystem::is_directory(path)) {
            RunFile(path);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(path))
            RunFile(entry.path());
    }
    return 0;
}
