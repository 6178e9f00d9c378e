// JSON straight into the output buffer. Text that is not known to be ASCII never goes in as it is:
// byte strings are written as hex, or as text when all their bytes are printable.
#ifndef TOOLS_OUTPUT_JSON_H
#define TOOLS_OUTPUT_JSON_H

#include "tools/output/escape.h"
#include "tools/output/output.h"

#include <rapidjson/writer.h>
#include <string_view>

namespace tool
{

class cJson
{
public:
    explicit cJson(cOutput& output) : out(output), writer(output) {}

    void StartObject() { writer.StartObject(); }
    void EndObject() { writer.EndObject(); }
    void StartArray() { writer.StartArray(); }
    void EndArray() { writer.EndArray(); }
    // Keys are ours: nothing in them needs an escape.
    void Key(std::string_view key)
    {
        Quoted([&] { out.Append(key); });
    }
    void String(std::string_view text)
    {
        Quoted([&] { AppendEscaped(out, text, ForJson); });
    }
    void Uint(std::uint64_t v) { writer.Uint64(v); }
    void Int(std::int64_t v) { writer.Int64(v); }
    void Bool(bool v) { writer.Bool(v); }
    // A number as its text says it, whatever its size.
    void Number(std::string_view text)
    {
        writer.RawValue("", 0, rapidjson::kNumberType);
        out.Append(text);
    }
    // A byte string as a string of hex digits.
    void Hex(std::string_view bytes)
    {
        Quoted([&] { out.AppendHex(bytes); });
    }
    // Ends a line, which is a document of its own.
    void EndLine()
    {
        out.Put('\n');
        writer.Reset(out);
    }

private:
    template <typename Append>
    void Quoted(Append append)
    {
        writer.RawValue("", 0, rapidjson::kStringType); // what goes before a value
        out.Put('"');
        append();
        out.Put('"');
    }

    cOutput& out;
    rapidjson::Writer<cOutput> writer;
};

} // namespace tool

#endif
