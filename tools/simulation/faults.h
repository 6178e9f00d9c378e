// A bad line: damages a fraction of the frames that pass, and foretells exactly what a reader of
// the stream will count. So that it can, a fault never makes or hides a start sequence or an end:
//
//   flipped bits  one or three, in content, padding or checksum, which the checksum always shows
//   a lost end    the frame runs into the next one, which breaks it off
//   a lost begin  what is left of the frame stands outside of frames
//   noise         up to 40 bytes, none of them an escape, before the frame
#ifndef TOOLS_SIMULATION_FAULTS_H
#define TOOLS_SIMULATION_FAULTS_H

#include "tools/road/counts.h"
#include "tools/simulation/random.h"

#include <cstdint>
#include <string>

namespace tool
{

class cFaults
{
public:
    // Damages the fraction from 0 to 1 of all frames; the same seed, the same faults.
    cFaults(std::uint64_t seed, double fraction) : random(seed), dFraction(fraction) {}

    // What becomes of a frame on its way: frame is changed in place.
    void Pass(std::string& frame);
    // The stream has ended.
    void End();

    // What reading the stream from its begin gives.
    const StreamCounts& Counts() const noexcept { return counts; }
    // How many frames were damaged, and in which way.
    struct Done {
        std::uint64_t ullFlipped = 0;
        std::uint64_t ullNoEnd = 0;
        std::uint64_t ullNoBegin = 0;
        std::uint64_t ullNoise = 0;
    };
    const Done& Faults() const noexcept { return done; }

private:
    void Begin();
    void Flip(std::string& frame);
    void LoseEnd(std::string& frame);
    void LoseBegin(std::string& frame);
    void AddNoise(std::string& frame);

    cRandom random;
    double dFraction;
    StreamCounts counts;
    Done done;
    bool bOpen = false; // the last frame has lost its end
};

} // namespace tool

#endif
