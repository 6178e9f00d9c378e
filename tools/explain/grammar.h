// The grammar of SML as data: the fields of every structure in the order in which they are sent.
// The walker goes through a message along it; nothing else in the tool knows the order of fields.
#ifndef TOOLS_EXPLAIN_GRAMMAR_H
#define TOOLS_EXPLAIN_GRAMMAR_H

#include <string_view>

namespace tool
{

enum class eFIELD : unsigned char {
    // Byte strings; a NAME is an OBIS code or that of a parameter
    OCTETS,
    NAME,
    ATTENTION,
    // Unsigned numbers; SECONDS since the meter's start, a TIMESTAMP since 1970
    NUMBER,
    SECONDS,
    TIMESTAMP,
    UNIT,
    STATUS,
    TAG, // of a choice
    CRC,
    // Signed numbers
    OFFSET, // to UTC in minutes
    SCALER,
    // Others
    BOOLEAN,
    SHAPE,      // a list, as a rule tells
    VALUE,      // what a meter has measured: any of the above or a time
    ANY_STATUS, // as many bytes as its TL field announces, whatever the type
    END,        // the last byte of a message
    ANY         // where the grammar does not tell
};

// What a list holds: exactly the fields named; any number of the one field; or a tag and the field
// that it selects.
enum class eSHAPE : unsigned char { SEQUENCE, LIST, CHOICE };

struct Rule {
    std::string_view name;
    eSHAPE eShape;
    std::string_view fields; // see grammar.cpp
};

struct Field {
    std::string_view name;
    eFIELD eKind = eFIELD::ANY;
    bool bOptional = true;
    const Rule* pRule = nullptr; // of a SHAPE, and of a VALUE that is a list
    unsigned uiTag = 0;          // that selects it in a choice
};

// Takes the first of the fields of a rule; false when there is none.
bool TakeField(std::string_view& fields, Field& field) noexcept;

extern const Rule& kMessageRule;

} // namespace tool

#endif
