// What a person is told on stderr, and what the exit status becomes of it.
#ifndef TOOLS_ROAD_REPORT_H
#define TOOLS_ROAD_REPORT_H

#include <algorithm>
#include <string>

namespace tool
{

// Exit statuses, the worse the higher.
enum eEXIT : int {
    EXIT_GOOD = 0,      // all input was good
    EXIT_DAMAGED = 1,   // some input was damaged or refused
    EXIT_FAILED = 2,    // usage, or an input or output that cannot be opened or fails
    EXIT_UNSETTLED = -1 // good or damaged: cReport::Settle decides
};

class cReport
{
public:
    // What the lines are about: the name of an input, or empty.
    void SetSubject(std::string name) { subject = std::move(name); }
    const std::string& Subject() const noexcept { return subject; }

    // Writes one line, formatted as printf does: "quarn: SUBJECT: text" (coloured on a screen),
    // with all that could disturb a terminal escaped, and raises the status to severity (EXIT_GOOD:
    // a note, which leaves it as it is).
    void Say(eEXIT severity, const char* format, ...) __attribute__((format(printf, 3, 4)));

    // Shows a line that is overwritten by the next one, or by what is said; an empty one takes it
    // away. REQUIRES: standard error is a screen.
    void Show(const std::string& line);

    // Whether what has been said as EXIT_UNSETTLED counts as damage.
    void Settle(bool counts) noexcept
    {
        if (counts)
            eStatus = Status();
        bUnsettled = false;
    }

    eEXIT Status() const noexcept { return bUnsettled ? std::max(eStatus, EXIT_DAMAGED) : eStatus; }

private:
    std::string subject;
    eEXIT eStatus = EXIT_GOOD;
    bool bUnsettled = false;
    bool bShown = false; // a line is to be overwritten
};

} // namespace tool

#endif
