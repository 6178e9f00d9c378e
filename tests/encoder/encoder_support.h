// What the encoder's tests share: records out of one line of text, bytes of objects and messages as
// hex, and the lines that LibSmle wrote.
#ifndef TESTS_ENCODER_ENCODER_SUPPORT_H
#define TESTS_ENCODER_ENCODER_SUPPORT_H

#include "tests/support/hex.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

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

// A record: "id=xAB12 unit=u30 scaler=i-1 name=U5 big=I-5 flag=b1 time={type=u1}".
inline vorn::cRecord Rec(std::string_view text)
{
    vorn::cRecord rec;
    AppendPars(rec, text);
    return rec;
}

inline std::string DataHex(const vorn::cRecord& rec, const char* name)
{
    const vorn::cRecordPar par = rec.GetFirstPar(name, 0, 0);
    return ToHex(std::string_view(par.GetData(), static_cast<std::size_t>(par.GetSize())));
}

// What write puts into a buffer of size bytes, as hex without blanks.
inline std::string Written(const std::function<void(cBuffer*)>& write, std::size_t size = 8192)
{
    std::vector<char> storage(size); // exactly as large: an overrun is seen by the sanitizer
    cBuffer buf(storage.data(), static_cast<long>(size), 0, 0);
    write(&buf);
    return ToHex(std::string_view(buf.ReadPtr(), static_cast<std::size_t>(buf.Left())));
}

inline std::string Written(Sml_Type& object, std::size_t size = 8192)
{
    return Written([&](cBuffer* buf) { object.ToBin(buf); }, size);
}

inline std::string Hexed(std::string_view hex) { return ToHex(Hex(hex)); }

// The CRC field of a message that so far has these bytes.
inline std::string CrcField(const std::string& bytes)
{
    const unsigned crc =
        vorn::createCRC16(bytes.data(), static_cast<int>(bytes.size()), vorn::initCRC16());
    const std::string low(1, static_cast<char>(crc & 0xFFU));
    const std::string high(1, static_cast<char>(crc >> 8));
    return low[0] != 0 ? '\x63' + low + high : '\x62' + high;
}

// Collects what LibSmle writes up to a level; Lines: "2 text|16 text".
class EncoderTrace
{
public:
    explicit EncoderTrace(int level) : capture(LibSmle, level) {}
    std::string Lines() const
    {
        std::string all;
        for (const std::string& line : capture.Lines()) {
            const std::size_t end = line.find("]: ");
            all += (all.empty() ? "" : "|") + line.substr(8, end - 8) + ' ' + line.substr(end + 3);
        }
        return all;
    }

private:
    TraceCapture capture;
};

} // namespace test

#endif
