// The kinds of messages, as records and people call them.
#ifndef TOOLS_READING_KIND_H
#define TOOLS_READING_KIND_H

namespace tool
{

struct MessageKind {
    unsigned uiIdentifier; // one of eSML_MSG
    const char* pcBody;    // label of its body in a record
    const char* pcName;    // for people
};

// Null for an identifier that is not known.
const MessageKind* FindKind(unsigned identifier) noexcept;

} // namespace tool

#endif
