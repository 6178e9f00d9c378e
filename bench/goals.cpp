// See goals.h.
#include "bench/goals.h"

#include <cstdio>
#include <string_view>
#include <vector>

namespace bench
{
namespace
{

// A name that ends in '/' stands for two benchmarks: with six entries and with a hundred.
struct Ratio {
    const char* pcWork;
    const char* pcOurs;
    std::vector<const char*> anchors; // their sum is what ours is compared with
    double dGoal;                     // at most; 0: for orientation
    double dTimesLarger = 1;          // how much more work ours does than the anchor
};

const Ratio kRatios[] = {
    {"parse / msgpack unpack", "Parse/", {"MsgpackUnpack/"}, 1.0},
    {"parse / ordered_json from_cbor", "Parse/", {"FromCbor/"}, 0.1},
    {"parse / CRC pass", "Parse/", {"CrcPass/"}, 0},
    {"parse / memcpy", "Parse/", {"Memcpy/"}, 0},
    {"encode / msgpack pack", "Encode/", {"MsgpackPack/"}, 1.0},
    {"encode / ordered_json to_cbor", "Encode/", {"ToCbor/"}, 0},
    {"record class, in and out / parse", "Classes/", {"Parse/"}, 1.5},
    {"CRC of 4 KiB / by single bytes", "Crc/4096", {"CrcByBytes/4096"}, 1.0 / 6},
    {"unframe 64 KiB in frames of a file / memcpy + CRC",
     "Unframe/0",
     {"Memcpy64K/0", "Crc64K/0"},
     2},
    {"unframe 64 KiB in one frame / memcpy + CRC", "Unframe/1", {"Memcpy64K/1", "Crc64K/1"}, 2},
    {"frame 64 KiB in frames of a file / memcpy + CRC", "Frame/0", {"Memcpy64K/0", "Crc64K/0"}, 2},
    {"frame 64 KiB in one frame / memcpy + CRC", "Frame/1", {"Memcpy64K/1", "Crc64K/1"}, 2},
    {"cSMLTdec, 64 KiB in frames of a file / memcpy + CRC",
     "CodecDecode/0",
     {"Memcpy64K/0", "Crc64K/0"},
     0},
    {"cSMLTdec, 64 KiB in one frame / memcpy + CRC",
     "CodecDecode/1",
     {"Memcpy64K/1", "Crc64K/1"},
     0},
    {"cSMLTenc, 64 KiB in frames of a file / memcpy + CRC",
     "CodecEncode/0",
     {"Memcpy64K/0", "Crc64K/0"},
     0},
    {"cSMLTenc, 64 KiB in one frame / memcpy + CRC",
     "CodecEncode/1",
     {"Memcpy64K/1", "Crc64K/1"},
     0},
    {"copy of a record / atomic inc + dec", "CopyRecord/", {"AtomicUpDown"}, 3},
    {"parse, a byte per call / one piece", "ParseByBytes/", {"Parse/"}, 6},
    {"per entry: 1,000 / 10", "ParseEntries/1000", {"ParseEntries/10"}, 1.2, 100},
    {"per entry: 10,000 / 100", "ParseEntries/10000", {"ParseEntries/100"}, 1.2, 100},
    {"per byte, packets: 10 MB / 1 MB", "ParsePackets/10", {"ParsePackets/1"}, 1.2, 10},
    {"per message: 10,000 / 1,000", "ParseMessages/10000", {"ParseMessages/1000"}, 1.2, 10},
    {"per message kept: 10,000 / 1,000", "KeepMessages/10000", {"KeepMessages/1000"}, 0, 10},
};

double TimeOf(const Times& times, const char* name, const char* entries)
{
    const std::string_view base = name;
    const auto found = times.find(std::string(base) + (base.back() == '/' ? entries : ""));
    return found != times.end() ? found->second : 0;
}

void Print(const Ratio& ratio, const Times& times, const char* entries)
{
    const double ours = TimeOf(times, ratio.pcOurs, entries) / ratio.dTimesLarger;
    double anchor = 0;
    for (const char* name : ratio.anchors)
        anchor += TimeOf(times, name, entries);
    if (ours == 0 || anchor == 0)
        return; // filtered out
    const std::string suffix = *entries != '\0' ? std::string(", ") + entries + " entries" : "";
    PrintLine(ratio.pcWork + suffix, ours / anchor, ratio.dGoal);
}

} // namespace

void PrintLine(const std::string& work, double measured, double goal)
{
    const int digits = measured == static_cast<double>(static_cast<long long>(measured)) ? 0 : 3;
    if (goal == 0) {
        std::printf("| %-52s | %10.*f | %9s | %-6s |\n", work.c_str(), digits, measured, "", "");
        return;
    }
    char bound[16];
    std::snprintf(bound, sizeof bound, "%.6g",
                  static_cast<double>(static_cast<long long>(goal * 1000 + 0.5)) / 1000);
    std::printf("| %-52s | %10.*f | %9s | %-6s |\n", work.c_str(), digits, measured, bound,
                measured <= goal ? "holds" : "MISSED");
}

void PrintRatios(const Times& times)
{
    std::printf("\n| %-52s | %10s | %9s | %-6s |\n|%s|%s|%s|%s|\n", "work", "measured", "at most",
                "", std::string(54, '-').c_str(), std::string(12, '-').c_str(),
                std::string(11, '-').c_str(), std::string(8, '-').c_str());
    for (const Ratio& ratio : kRatios) {
        if (std::string_view(ratio.pcOurs).back() == '/') {
            Print(ratio, times, "6");
            Print(ratio, times, "100");
        } else {
            Print(ratio, times, "");
        }
    }
}

} // namespace bench
