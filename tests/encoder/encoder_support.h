// What the encoder's tests share: records in one expression, bytes of objects and messages as hex,
// and the lines that LibSmle wrote.
#ifndef TESTS_ENCODER_ENCODER_SUPPORT_H
#define TESTS_ENCODER_ENCODER_SUPPORT_H

#include "tests/support/hex.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <variant>
#include <vector>

namespace test
{

using U64 = unsigned long long;

struct Data {
    explicit Data(std::string_view hex) : bytes(Hex(hex)) {}
    std::string bytes;
};

struct Par {
    const char* name;
    std::variant<unsigned, int, U64, long long, bool, Data, vorn::cRecord> value;
};

inline void Append(vorn::cRecord& rec, const Par& par)
{
    struct Appender {
        vorn::cRecord& rec;
        const char* name;
        void operator()(unsigned v) const { rec.AppendUIntPar(name, v, 0); }
        void operator()(int v) const { rec.AppendSIntPar(name, v, 0); }
        void operator()(U64 v) const { rec.AppendUInt64Par(name, v, 0); }
        void operator()(long long v) const { rec.AppendSInt64Par(name, v, 0); }
        void operator()(bool v) const { rec.AppendBoolPar(name, v, 0); }
        void operator()(const Data& v) const
        {
            rec.AppendDataPar(name, v.bytes.data(), static_cast<int>(v.bytes.size()), 0);
        }
        void operator()(const vorn::cRecord& v) const { rec.AppendRecordPar(name, v, 0); }
    };
    std::visit(Appender{rec, par.name}, par.value);
}

inline vorn::cRecord Rec(std::initializer_list<Par> pars)
{
    vorn::cRecord rec;
    for (const Par& par : pars)
        Append(rec, par);
    return rec;
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

// Collects what LibSmle writes up to a level; Lines: "2 text|16 text".
class EncoderTrace
{
public:
    explicit EncoderTrace(int level = 16) : capture(LibSmle, level) {}
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
