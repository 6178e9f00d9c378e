// Records from text, and records from what a class's getters yield.
//
//   Record("valListEntry{ objName=U7 value=x4142 }")
//
// Each parameter is a name and then {nested parameters}, or =, a letter for the kind and the value:
// u unsigned, i signed, U and I the same with 64 bits, b boolean (0 or 1), x data in hex.
#ifndef TESTS_RECORDS_RECORD_TEXT_H
#define TESTS_RECORDS_RECORD_TEXT_H

#include "tests/support/hex.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>
#include <ostream>
#include <sstream>

namespace vorn
{
inline void PrintTo(const cRecord& record, std::ostream* out) { *out << record.ToString(); }
} // namespace vorn

namespace test
{

using Lines = std::vector<std::string>;

// Appends a value as the library writes it.
template <class T>
void Append(vorn::cRecord& to, const char* label, const T& v)
{
    if constexpr (std::is_same_v<T, cSmlTime>)
        v.ToRecord(to, label);
    else
        v.ToRecord(to);
}
#define APPEND(Type, Operation)                                                                    \
    inline void Append(vorn::cRecord& to, const char* label, Type v) { to.Operation(label, v, 0); }
APPEND(bool, AppendBoolPar)
APPEND(unsigned, AppendUIntPar)
APPEND(int, AppendSIntPar)
APPEND(unsigned long long, AppendUInt64Par)
APPEND(long long, AppendSInt64Par)
inline void Append(vorn::cRecord& to, const char* label, const std::string& v)
{
    to.AppendDataPar(label, v.data(), static_cast<int>(v.size()), 0);
}

inline vorn::cRecord Parse(std::istringstream& in)
{
    vorn::cRecord record;
    for (std::string word; in >> word && word != "}";) {
        const std::size_t end = word.find_first_of("={");
        const std::string label = word.substr(0, end);
        const char kind = word[end] == '=' ? word[end + 1] : '{';
        const std::string v = kind == '{' ? "" : word.substr(end + 2);
        switch (kind) {
        case 'u':
            Append(record, label.c_str(), static_cast<unsigned>(std::stoul(v)));
            break;
        case 'i':
            Append(record, label.c_str(), std::stoi(v));
            break;
        case 'U':
            Append(record, label.c_str(), std::stoull(v));
            break;
        case 'I':
            Append(record, label.c_str(), std::stoll(v));
            break;
        case 'b':
            Append(record, label.c_str(), v == "1");
            break;
        case 'x':
            Append(record, label.c_str(), Hex(v));
            break;
        default:
            record.AppendRecordPar(label.c_str(), Parse(in), 0);
        }
    }
    return record;
}

inline vorn::cRecord Record(const std::string& text)
{
    std::istringstream in(text);
    return Parse(in);
}

// What object writes; an empty record when it refuses.
template <class C>
vorn::cRecord Written(const C& object)
{
    vorn::cRecord record;
    const bool done = object.ToRecord(record);
    EXPECT_EQ(done, record != vorn::cRecord());
    return record;
}

} // namespace test

#endif
