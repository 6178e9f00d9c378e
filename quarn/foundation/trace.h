// How the library writes its trace lines: the unit's level is tested before anything is formatted,
// so that a silent line costs one comparison.
#ifndef QUARN_FOUNDATION_TRACE_H
#define QUARN_FOUNDATION_TRACE_H

#include "quarn/foundation/framework.h"
#include "quarn/foundation/units.h"

#include <exception>

namespace quarn::detail
{

constexpr vorn::eLEVEL kError = vorn::eLEVEL(2);    // errors and refused input
constexpr vorn::eLEVEL kAnomaly = vorn::eLEVEL(4);  // anomalies and diagnostics
constexpr vorn::eLEVEL kProgress = vorn::eLEVEL(8); // progress and file-level events
constexpr vorn::eLEVEL kDetail = vorn::eLEVEL(16);  // creation, state transitions, dumps

inline bool Traces(const vorn::cUnit* unit, vorn::eLEVEL level) noexcept
{
    return unit->iLevel >= level;
}

// Out of line, so that the test alone stands where the line is told.
template <typename... Args>
[[gnu::cold, gnu::noinline]] void WriteTrace(vorn::cUnit* unit, vorn::eLEVEL level,
                                             const char* format, Args... args) noexcept
{
    try {
        if constexpr (sizeof...(args) == 0)
            vorn::_Trace(unit, level, format);
        else
            vorn::_Trace(unit, level, vorn::FormatString(format, args...));
    } catch (...) {
    }
}

// format follows printf and is taken as plain text when no arguments are given. A line for which no
// memory is left is lost.
template <typename... Args>
inline void Trace(vorn::cUnit* unit, vorn::eLEVEL level, const char* format, Args... args) noexcept
{
    if (Traces(unit, level))
        WriteTrace(unit, level, format, args...);
}

// Runs a step that may throw; false, and a trace line, when it did.
template <typename Step>
bool Guarded(const char* who, Step step) noexcept
{
    try {
        step();
        return true;
    } catch (const std::exception& e) {
        Trace(LibQuarn, kError, "%s: %s", who, e.what());
    } catch (...) {
        Trace(LibQuarn, kError, "%s: failed", who);
    }
    return false;
}

} // namespace quarn::detail

#endif
