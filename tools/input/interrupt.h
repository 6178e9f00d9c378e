// Ctrl-C and SIGTERM end the reading, not the program: sources see the end of their input, what has
// arrived is printed, and the exit status is right. A second signal ends the program at once.
#ifndef TOOLS_INPUT_INTERRUPT_H
#define TOOLS_INPUT_INTERRUPT_H

namespace tool
{

// Installs the handlers. Called once, before any source is read.
void CatchInterrupts();

// A signal has come.
bool Interrupted() noexcept;

// Becomes readable when a signal comes, so that a wait can include it; -1 before CatchInterrupts.
int InterruptFd() noexcept;

// Waits so many milliseconds, or until a signal comes: false then.
bool Sleep(long milliseconds) noexcept;

} // namespace tool

#endif
