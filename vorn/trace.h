// Trace units and the trace sink.
//
// A unit is a named source of trace lines with a level of its own. A line of level L is written
// only when the unit's current level is at least L; callers test that before they build the text:
//
//   if (unit->iLevel >= vorn::LEVEL_ERROR)
//       vorn::_Trace(unit, vorn::LEVEL_ERROR, vorn::FormatString("rc=%d", rc));
//
// Everything here may be used from several threads at once.
#ifndef VORN_TRACE_H
#define VORN_TRACE_H

#include "vorn/object.h"

#include <atomic>
#include <functional>
#include <string>

namespace vorn
{

enum eLEVEL : int {
    LEVEL_ERROR = 2,   // errors and refused input
    LEVEL_WARNING = 4, // anomalies and diagnostics
    LEVEL_INFO = 8,    // progress and file-level events
    LEVEL_DEBUG = 16   // state transitions and dumps
};

enum eOUTPUT : int { OUTPUT_DEFAULT = 0 };

class VORN_API cUnit : public cObject
{
public:
    // Registers the unit for FindUnit until its destruction. The name is not copied: it must live
    // as long as the unit. The current level starts at level.
    cUnit(const char* name, eLEVEL level, eOUTPUT output) noexcept;
    ~cUnit() override;
    cUnit(const cUnit&) = delete;
    cUnit& operator=(const cUnit&) = delete;

    const char* GetName() const noexcept { return pcName; }
    eOUTPUT GetOutput() const noexcept { return eOutput; }
    std::string ToString() const override; // "NAME=LEVEL"

    std::atomic<int> iLevel; // may be read and set at any time, from any thread

private:
    friend VORN_API cUnit* FindUnit(const char* name) noexcept;

    const char* pcName;
    eOUTPUT eOutput;
    cUnit* pNext = nullptr; // next in the list of all units
};

// The unit of that name, or null. Of several units with one name, the newest is found.
VORN_API cUnit* FindUnit(const char* name) noexcept;

// Writes text as one trace line of unit at level, if the unit's level lets it pass. A null unit or
// text writes nothing. An exception of the sink is swallowed: tracing never disturbs the work.
VORN_API void _Trace(cUnit* unit, eLEVEL level, const char* text) noexcept;
VORN_API void _Trace(cUnit* unit, eLEVEL level, const std::string& text) noexcept;

using TraceSink = std::function<void(const cUnit&, eLEVEL, const std::string&)>;

// Replaces the receiver of all trace lines; an empty function restores the default, which writes
// one line to stderr. The sink is called in the thread that traces, without any lock held, and may
// be called from several threads at once. A line under way in another thread may still reach the
// former sink after SetTraceSink has returned.
VORN_API void SetTraceSink(TraceSink sink);

} // namespace vorn

#endif
