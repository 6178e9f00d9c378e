// --format readings and --format csv: one line per reading, as a JSON object or as a row of a
// table. Both are written by one function that names the fields; what a field looks like is the
// business of the two writers.
#include "tools/output/escape.h"
#include "tools/output/json.h"
#include "tools/output/output_format.h"
#include "tools/reading/obis.h"
#include "tools/reading/unit.h"

#include <charconv>

namespace tool
{
namespace
{

// A JSON object per reading; a field without a value does not appear.
class cJsonLine
{
public:
    cJsonLine(cOutput& output, const FormatOptions&) : json(output) {}

    void Start() {}
    void Begin() { json.StartObject(); }
    void End()
    {
        json.EndObject();
        json.EndLine();
    }
    void Uint(std::string_view key, std::optional<std::uint64_t> v)
    {
        if (v) {
            json.Key(key);
            json.Uint(*v);
        }
    }
    void Number(std::string_view key, std::string_view text)
    {
        if (!text.empty()) {
            json.Key(key);
            json.Number(text);
        }
    }
    void Text(std::string_view key, std::string_view text)
    {
        json.Key(key);
        json.String(text);
    }
    void Name(std::string_view key, std::string_view text)
    {
        if (!text.empty())
            Text(key, text);
    }
    void Correction(std::string_view text) { Name("correction", text); }
    void Hex(std::string_view key, std::string_view bytes)
    {
        json.Key(key);
        json.Hex(bytes);
    }

private:
    cJson json;
};

// A row per reading; every field has its column.
class cCsvLine
{
public:
    cCsvLine(cOutput& output, const FormatOptions& options)
        : out(output), bCorrections(options.bCorrections)
    {
    }

    void Start()
    {
        out.Append("frame,message,server,time,obis,name,value,unit,scaler,raw,status");
        out.Append(bCorrections ? ",correction\n" : "\n");
    }
    void Begin() { bFirst = true; }
    void End() { out.Put('\n'); }
    void Uint(std::string_view, std::optional<std::uint64_t> v)
    {
        Separate();
        if (v) {
            char* p = out.Room(20);
            out.Advance(static_cast<std::size_t>(std::to_chars(p, p + 20, *v).ptr - p));
        }
    }
    void Number(std::string_view, std::string_view text)
    {
        Separate();
        out.Append(text);
    }
    void Text(std::string_view, std::string_view text)
    {
        Separate();
        AppendEscaped(out, text, ForCsv);
    }
    void Name(std::string_view key, std::string_view text) { Text(key, text); }
    void Correction(std::string_view text)
    {
        if (bCorrections)
            Text({}, text);
    }
    void Hex(std::string_view, std::string_view bytes)
    {
        Separate();
        out.AppendHex(bytes);
    }

private:
    void Separate()
    {
        if (!bFirst)
            out.Put(',');
        bFirst = false;
    }

    cOutput& out;
    bool bCorrections;
    bool bFirst = true;
};

template <typename Line>
class cReadingsFormat : public cFormat
{
public:
    cReadingsFormat(cOutput& output, const FormatOptions& options)
        : cFormat(output), line(output, options)
    {
    }

    bool IsComplete() const noexcept override { return false; }
    void Start() override { line.Start(); }

    void Message(const Frame& frame, const MessageInfo& info, const vorn::cRecord&,
                 const std::vector<Reading>& readings) override
    {
        for (const Reading& reading : readings) {
            char obis[kMaxObis];
            line.Begin();
            line.Uint("frame", frame.ullNumber);
            line.Uint("message", info.uiNumber);
            line.Hex("server", info.server);
            line.Uint("time", reading.time ? std::optional(reading.time->ullValue) : std::nullopt);
            line.Text("obis", {obis, FormatObis(reading.ullObis, obis)});
            line.Name("name", ObisName(reading.ullObis));
            if (const std::optional<Integer> number = NumberOf(*reading.pValue))
                NumberFields(reading, *number);
            else
                OtherFields(reading);
            line.Uint("status", reading.status);
            line.Correction(reading.pcCorrection);
            line.End();
        }
    }

private:
    void NumberFields(const Reading& reading, Integer number)
    {
        char text[kMaxDecimal];
        line.Number("value", {text, FormatDecimal(reading.corrected.value_or(number),
                                                  reading.scaler.value_or(0), text)});
        line.Name("unit", UnitSymbol(reading.unit.value_or(0)));
        line.Number("scaler", reading.scaler ? Decimal(Integer::OfSigned(*reading.scaler), text)
                                             : std::string_view());
        line.Number("raw", Decimal(number, text));
    }

    // Byte strings and booleans, which have no scaler.
    void OtherFields(const Reading& reading)
    {
        const vorn::cRecordPar& value = *reading.pValue;
        if (value.GetType(1) == quarn::KIND_BOOL)
            line.Number("value", value.GetBool() ? "true" : "false");
        else if (IsPrintable(BytesOf(value)))
            line.Text("value", BytesOf(value));
        else
            line.Hex("value", BytesOf(value));
        line.Name("unit", UnitSymbol(reading.unit.value_or(0)));
        line.Number("scaler", {});
        line.Number("raw", {});
    }

    static std::string_view Decimal(Integer number, char* text) noexcept
    {
        return {text, FormatDecimal(number, 0, text)};
    }

    Line line;
};

} // namespace

std::unique_ptr<cFormat> MakeReadingsFormat(cOutput& output, const FormatOptions& options)
{
    return std::make_unique<cReadingsFormat<cJsonLine>>(output, options);
}

std::unique_ptr<cFormat> MakeCsvFormat(cOutput& output, const FormatOptions& options)
{
    return std::make_unique<cReadingsFormat<cCsvLine>>(output, options);
}

} // namespace tool
