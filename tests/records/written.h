// What the objects of the record classes write, as records that tests compare.
#ifndef TESTS_RECORDS_WRITTEN_H
#define TESTS_RECORDS_WRITTEN_H

#include "tests/support/record_text.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>
#include <ostream>

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
