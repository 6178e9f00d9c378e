// Writes the inputs that fuzzing starts from: files of messages of each kind for the targets that
// take bytes of the wire, random bytes for those that take choices.
//
//   fuzz_seeds FOLDER      makes FOLDER/TARGET for each target
#include "tests/roundtrip/generator.h"
#include "tests/support/message.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace
{

using namespace test;

class Folder
{
public:
    Folder(const std::filesystem::path& root, const char* target) : path(root / target)
    {
        std::filesystem::create_directories(path);
    }
    void Write(const std::string& bytes)
    {
        std::ofstream(path / std::to_string(++iCount), std::ios::binary) << bytes;
    }

private:
    std::filesystem::path path;
    int iCount = 0;
};

// What the encoder does not write: a profile-pack response, a tuple, a value as a list.
std::vector<std::string> OtherFiles()
{
    const std::string time = " 72 62 01 65 00 00 00 07 ";
    const std::string tuple = "72 62 03 F1 07 02 01 62 05";
    return {
        OpenRes() +
            Message("0301", "78 02 05" + time +
                                "62 0F 71 07 01 00 01 08 00 FF 71 73 07 01 00 01 08"
                                " 00 FF 62 1E 52 FF 71 74" +
                                time + "62 00 71 72 62 05 01 01 01 01") +
            CloseRes(),
        OpenRes() +
            Message("0501",
                    "73 02 05 71 07 81 81 C7 82 0A FF 73 07 81 81 C7 82 0A FF " + tuple + "01") +
            CloseRes(),
        OpenRes() +
            Message("0701", "77 01 02 05 01 01 71 77 07 01 00 00 09 0B FF 01 01 01 01 72 62 01" +
                                time + "01 01 01") +
            CloseRes(),
        OpenRes() +
            Message("0701", "77 01 02 05 01 01 71 77 07 01 00 00 09 0B FF 01 01 01 01 " +
                                ToHex(LongString(std::string(3000, 'x'))) + " 01 01 01") +
            CloseRes(),
    };
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: fuzz_seeds FOLDER\n";
        return 2;
    }
    LibSmle->iLevel = 0;
    Choices choices(1);
    std::vector<std::string> files = OtherFiles();
    for (unsigned i = 0; i < 80; ++i) // some of every kind
        files.push_back(BytesOf(MakeFile(choices, i % 3)));
    Folder parser(argv[1], "parser");
    Folder damage(argv[1], "damage");
    Folder transport(argv[1], "transport");
    for (const std::string& file : files) {
        const std::string ending = {static_cast<char>(choices.Below(256)),
                                    static_cast<char>(choices.Below(256))};
        parser.Write(file + ending);
        damage.Write(file.substr(0, choices.Below(static_cast<unsigned>(file.size()))) + ending);
        cSMLTenc encoder(SMLT_MODE_TP);
        const std::string frame =
            Framed(encoder, BUF_FLAG_SML | BUF_FLAG_FIRST | BUF_FLAG_LAST, file.substr(0, 1000));
        transport.Write(frame + ending);
        std::string damaged = frame.substr(choices.Below(40));
        damaged.append(frame, 0, 30).append(frame).append(ending);
        transport.Write(damaged);
    }
    for (const char* const target : {"encoder", "roundtrip", "record"}) {
        Folder folder(argv[1], target);
        for (const unsigned size : {10U, 100U, 300U, 1000U, 4000U}) {
            for (int i = 0; i < 5; ++i) {
                std::string bytes(size, 0);
                for (char& c : bytes)
                    c = static_cast<char>(choices.Below(256));
                folder.Write(bytes);
            }
        }
    }
    return 0;
}
