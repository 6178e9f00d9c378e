// What each subcommand can be asked, and the subcommands: each is one function in a file of its own
// and returns the exit status. The command line (command_line.h) fills in the options.
#ifndef TOOLS_COMMANDS_H
#define TOOLS_COMMANDS_H

#include "tools/input/format.h"
#include "tools/input/source.h"
#include "tools/reading/correction.h"
#include "tools/reading/obis.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool
{

enum class eFORMAT { TEXT, READINGS, CSV, RECORDS };

struct DecodeOptions {
    InputOptions inputs;
    eINPUT eInput = INPUT_AUTO;
    std::optional<eFORMAT> format;     // absent: TEXT on a terminal, else READINGS
    std::vector<ObisPattern> patterns; // of the codes wanted; none: all
    std::string server;                // bytes of the id wanted; empty: all
    std::vector<Correction> corrections;
    bool bKeepBad = false;
    bool bWatch = false;
    bool bExplain = false;
    std::string page; // file for an explanation as a page, "-" for standard output; empty: none
};

struct EncodeOptions {
    InputOptions inputs;
    bool bFrame = false;
};

struct FrameOptions {
    InputOptions inputs;
};

struct UnframeOptions {
    InputOptions inputs;
    bool bKeepBad = false;
};

struct CheckOptions {
    InputOptions inputs;
    eINPUT eInput = INPUT_AUTO;
    bool bJson = false;
};

struct SimulateOptions {
    unsigned uiEntries = 6;
    std::optional<double> interval;  // seconds
    unsigned long long ullCount = 0; // 0: without end
    unsigned long long ullSeed = 1;
    double dFaults = 0;
    std::string output = "-";
    bool bForce = false;
    std::optional<std::uint16_t> port;
};

int RunDecode(const DecodeOptions& options);
int RunEncode(const EncodeOptions& options);
int RunFrame(const FrameOptions& options);
int RunUnframe(const UnframeOptions& options);
int RunCheck(const CheckOptions& options);
int RunSimulate(const SimulateOptions& options);

} // namespace tool

#endif
