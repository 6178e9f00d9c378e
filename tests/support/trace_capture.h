// Collects the trace lines written while it lives, as "UNIT[level]: text", and sets the level of
// one unit for that time.
#ifndef TESTS_SUPPORT_TRACE_CAPTURE_H
#define TESTS_SUPPORT_TRACE_CAPTURE_H

#include "quarn/quarn.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace test
{

class TraceCapture
{
public:
    explicit TraceCapture(vorn::cUnit* unit = nullptr, int level = 2)
        : pUnit(unit), iFormerLevel(unit != nullptr ? unit->iLevel.load() : 0)
    {
        if (pUnit != nullptr)
            pUnit->iLevel = level;
        vorn::SetTraceSink(
            [store = store](const vorn::cUnit& source, vorn::eLEVEL lvl, const std::string& text) {
                const std::lock_guard<std::mutex> lock(store->mutex);
                store->lines.push_back(std::string(source.GetName()) + '[' + std::to_string(lvl) +
                                       "]: " + text);
            });
    }
    ~TraceCapture()
    {
        vorn::SetTraceSink({});
        if (pUnit != nullptr)
            pUnit->iLevel = iFormerLevel;
    }
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;

    std::vector<std::string> Lines() const
    {
        const std::lock_guard<std::mutex> lock(store->mutex);
        return store->lines;
    }
    bool Has(const std::string& line) const
    {
        const std::vector<std::string> lines = Lines();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    std::string Text() const
    {
        std::string text;
        for (const std::string& line : Lines())
            text += line + '\n';
        return text;
    }

private:
    struct Store {
        std::mutex mutex;
        std::vector<std::string> lines;
    };
    std::shared_ptr<Store> store = std::make_shared<Store>();
    vorn::cUnit* pUnit;
    int iFormerLevel;
};

} // namespace test

#endif
