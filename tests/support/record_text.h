// Records out of one line of text: Rec("id=xAB12 unit=u30 time={type=u1 value=u7}"). A value begins
// with its kind: u and U unsigned (32 and 64 bits), i and I signed, b boolean, x bytes as hex, {} a
// record.
#ifndef TESTS_SUPPORT_RECORD_TEXT_H
#define TESTS_SUPPORT_RECORD_TEXT_H

#include "tests/support/hex.h"

#include "quarn/quarn.h"

#include <cstdlib>
#include <string>
#include <string_view>

namespace test
{

using U64 = unsigned long long;

struct ParKind {
    char letter;
    void (*append)(vorn::cRecord& rec, const char* name, U64 number, const std::string& bytes);
};

inline constexpr ParKind kParKinds[] = {
    {'u', [](auto& r, auto n, U64 v, auto&) { r.AppendUIntPar(n, static_cast<unsigned>(v), 0); }},
    {'i', [](auto& r, auto n, U64 v, auto&) { r.AppendSIntPar(n, static_cast<int>(v), 0); }},
    {'U', [](auto& r, auto n, U64 v, auto&) { r.AppendUInt64Par(n, v, 0); }},
    {'I',
     [](auto& r, auto n, U64 v, auto&) { r.AppendSInt64Par(n, static_cast<long long>(v), 0); }},
    {'b', [](auto& r, auto n, U64 v, auto&) { r.AppendBoolPar(n, v != 0, 0); }},
    {'x', [](auto& r, auto n, U64,
             auto& b) { r.AppendDataPar(n, b.data(), static_cast<int>(b.size()), 0); }},
};

// Appends the parameters of text up to its end or to a closing brace, and takes them off.
inline void AppendPars(vorn::cRecord& rec, std::string_view& text)
{
    while (!text.empty()) {
        const char first = text.front();
        const std::size_t equals = first == ' ' || first == '}' ? 0 : text.find('=');
        const std::string name(text.substr(0, equals));
        text.remove_prefix(equals + 1);
        if (first == '}')
            return;
        if (first == ' ')
            continue;
        const char kind = text.at(0);
        text.remove_prefix(1);
        if (kind == '{') {
            vorn::cRecord nested;
            AppendPars(nested, text);
            rec.AppendRecordPar(name.c_str(), nested, 0);
            continue;
        }
        const std::string value(text.substr(0, text.find_first_of(" }")));
        text.remove_prefix(value.size());
        for (const ParKind& k : kParKinds) {
            if (k.letter == kind)
                k.append(rec, name.c_str(), std::strtoull(value.c_str(), nullptr, 0),
                         kind == 'x' ? Hex(value) : "");
        }
    }
}

inline vorn::cRecord Rec(std::string_view text)
{
    vorn::cRecord rec;
    AppendPars(rec, text);
    return rec;
}

} // namespace test

#endif
