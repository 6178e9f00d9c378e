// The list of units and the current sink: the only shared mutable state of libvorn. Both are
// reached through functions, so that units of any library may be created before this file's own
// statics.
#include "vorn/trace.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <utility>

namespace vorn
{
namespace
{

struct TraceState {
    std::mutex mutex;
    cUnit* pFirst = nullptr;
    std::shared_ptr<const TraceSink> sink; // null: the default
};

// Never destroyed: units of other libraries and late trace lines may outlive this library's
// statics.
TraceState& State()
{
    alignas(TraceState) static unsigned char storage[sizeof(TraceState)];
    static TraceState* const state = new (storage) TraceState;
    return *state;
}

void WriteToStderr(const cUnit& unit, eLEVEL level, const std::string& text)
{
    std::string line = unit.GetName();
    line += '[';
    line += std::to_string(static_cast<int>(level));
    line += "]: ";
    line += text;
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr); // one call: lines of threads do not mix
}

} // namespace

cUnit::cUnit(const char* name, eLEVEL level, eOUTPUT output) noexcept
    : iLevel(level), pcName(name), eOutput(output)
{
    TraceState& state = State();
    const std::lock_guard<std::mutex> lock(state.mutex);
    pNext = state.pFirst;
    state.pFirst = this;
}

cUnit::~cUnit()
{
    TraceState& state = State();
    const std::lock_guard<std::mutex> lock(state.mutex);
    for (cUnit** link = &state.pFirst; *link != nullptr; link = &(*link)->pNext) {
        if (*link == this) {
            *link = pNext;
            break;
        }
    }
}

std::string cUnit::ToString() const { return std::string(pcName) + '=' + std::to_string(iLevel); }

cUnit* FindUnit(const char* name) noexcept
{
    if (name == nullptr)
        return nullptr;
    TraceState& state = State();
    const std::lock_guard<std::mutex> lock(state.mutex);
    cUnit* unit = state.pFirst;
    while (unit != nullptr && std::strcmp(unit->pcName, name) != 0)
        unit = unit->pNext;
    return unit;
}

void _Trace(cUnit* unit, eLEVEL level, const char* text) noexcept
{
    if (unit == nullptr || text == nullptr || unit->iLevel < level)
        return;
    try {
        _Trace(unit, level, std::string(text));
    } catch (...) { // no memory for the line: it is lost
    }
}

void _Trace(cUnit* unit, eLEVEL level, const std::string& text) noexcept
{
    if (unit == nullptr || unit->iLevel < level)
        return;
    try {
        std::shared_ptr<const TraceSink> sink;
        {
            TraceState& state = State();
            const std::lock_guard<std::mutex> lock(state.mutex);
            sink = state.sink;
        }
        if (sink)
            (*sink)(*unit, level, text);
        else
            WriteToStderr(*unit, level, text);
    } catch (...) { // a failing sink loses its line, nothing else
    }
}

void SetTraceSink(TraceSink sink)
{
    std::shared_ptr<const TraceSink> next;
    if (sink)
        next = std::make_shared<const TraceSink>(std::move(sink));
    TraceState& state = State();
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.sink.swap(next); // the former sink dies with next, after the lock is released
}

} // namespace vorn
