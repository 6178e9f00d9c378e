// The grammar of SML as data: the fields of every structure in the order in which they are sent.
// The walker goes through a message along it; nothing else in the tool knows the order of fields.
#ifndef TOOLS_EXPLAIN_GRAMMAR_H
#define TOOLS_EXPLAIN_GRAMMAR_H

#include <cstddef>

namespace tool
{

enum class eFIELD : unsigned char {
    // Byte strings
    OCTETS,
    NAME, // an OBIS code or a parameter's name
    ATTENTION,
    // Unsigned numbers
    NUMBER,
    SECONDS,   // since the meter's start
    TIMESTAMP, // seconds since 1970
    UNIT,
    STATUS, // bits
    TAG,    // of a choice
    CRC,
    // Signed numbers
    MINUTES, // of an offset to UTC
    SCALER,
    // Others
    BOOLEAN,
    VALUE, // any of the above or a time
    SHAPE, // a list
    END    // the last byte of a message
};

enum class eSHAPE : unsigned char {
    SEQUENCE, // exactly these fields
    LIST,     // any number of the one field
    CHOICE    // a tag and the field that it selects
};

struct Shape;

struct Field {
    const char* pcName;
    eFIELD eKind;
    bool bOptional = false;
    const Shape* pShape = nullptr; // of eFIELD::SHAPE
    unsigned uiTag = 0;            // that selects it in a choice
};

struct Shape {
    eSHAPE eKind;
    const Field* pFields;
    std::size_t uiCount;
};

extern const Field kMessage;  // a whole message
extern const Shape kListType; // a value that is a list

} // namespace tool

#endif
