// See record_reader.h. The parser of the JSON text is iterative and calls the builder, which keeps
// the records that are not finished on a stack of its own: no line exhausts the program's.
#include "tools/encoding/record_reader.h"

#include "tools/input/hex_reader.h"

#include <algorithm>
#include <limits>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <unordered_map>
#include <vector>

namespace tool
{
namespace
{

constexpr rapidjson::SizeType kMaxTold = 60; // bytes of a key that is told

enum class eKIND { UINT, UINT64, SINT, BOOL, DATA, RECORD, LIST, VALUE, TEXT };

struct FieldRow {
    const char* pcLabel;
    eKIND kind;
    const char* pcElement = nullptr; // of a list
};

// Lists are known to the library.
constexpr FieldRow kFields[] = {
    // Lines of events
    {"event", eKIND::TEXT},
    {"frame", eKIND::UINT64},
    {"record", eKIND::RECORD},
    {"crc", eKIND::TEXT},
    {"bytes", eKIND::UINT64},
    {"messages", eKIND::UINT64},
    // What is around a body
    {"SmlMsgHeader", eKIND::RECORD},
    {"transactionId", eKIND::DATA},
    {"groupNo", eKIND::UINT},
    {"abortOnError", eKIND::UINT},
    {"smlMsgIdentifier", eKIND::UINT},
    {"openCid", eKIND::DATA},
    {"openRfid", eKIND::DATA},
    {"openSid", eKIND::DATA},
    {"openTid", eKIND::DATA},
    {"openGNo", eKIND::UINT},
    {"openAOE", eKIND::UINT},
    {"SmlCrc", eKIND::UINT},
    {"SmlStatus", eKIND::RECORD},
    {"Error", eKIND::SINT},
    {"Type", eKIND::SINT},
    {"Cast", eKIND::SINT},
    {"MsgNoInFile", eKIND::UINT},
    {"SmltFlags", eKIND::UINT},
    {"SmlMsgRawData", eKIND::DATA},
    // Bodies
    {"SmlOpenReq", eKIND::RECORD},
    {"SmlOpenRes", eKIND::RECORD},
    {"SmlCloseReq", eKIND::RECORD},
    {"SmlCloseRes", eKIND::RECORD},
    {"SmlGetProfileReq", eKIND::RECORD},
    {"SmlGetProfPackRes", eKIND::RECORD},
    {"SmlGetProfListRes", eKIND::RECORD},
    {"SmlGetProcParReq", eKIND::RECORD},
    {"SmlGetProcParRes", eKIND::RECORD},
    {"SmlSetProcParReq", eKIND::RECORD},
    {"SmlGetListReq", eKIND::RECORD},
    {"SmlGetListRes", eKIND::RECORD},
    {"SmlAttentionRes", eKIND::RECORD},
    // Their fields
    {"codepage", eKIND::DATA},
    {"clientId", eKIND::DATA},
    {"reqFileId", eKIND::DATA},
    {"serverId", eKIND::DATA},
    {"username", eKIND::DATA},
    {"password", eKIND::DATA},
    {"smlVersion", eKIND::UINT},
    {"refTime", eKIND::RECORD},
    {"globalSignature", eKIND::DATA},
    {"withRawdata", eKIND::BOOL},
    {"beginTime", eKIND::RECORD},
    {"endTime", eKIND::RECORD},
    {"actTime", eKIND::RECORD},
    {"regPeriod", eKIND::UINT},
    {"valTime", eKIND::RECORD},
    {"status", eKIND::UINT64},
    {"rawdata", eKIND::DATA},
    {"periodSignature", eKIND::DATA},
    {"profileSignature", eKIND::DATA},
    {"attribute", eKIND::DATA},
    {"extMsgPart", eKIND::UINT},
    {"attentionNo", eKIND::UINT64},
    {"attentionMsg", eKIND::DATA},
    {"listName", eKIND::UINT64},
    {"actSensorTime", eKIND::RECORD},
    {"listSignature", eKIND::DATA},
    {"actGatewayTime", eKIND::RECORD},
    // Elements of lists
    {"path_Entry", eKIND::UINT64},
    {"object_List_Entry", eKIND::UINT64},
    {"valListEntry", eKIND::RECORD},
    {"parTree", eKIND::RECORD},
    {"SmlPeriodEntry", eKIND::RECORD},
    {"pObjHdEntry", eKIND::RECORD},
    {"value_List_Entry", eKIND::RECORD},
    // Entries, times, values and trees
    {"objName", eKIND::UINT64},
    {"unit", eKIND::UINT},
    {"scaler", eKIND::SINT},
    {"value", eKIND::VALUE},
    {"valueSignature", eKIND::DATA},
    {"type", eKIND::UINT},
    {"locOffset", eKIND::SINT},
    {"seaOffset", eKIND::SINT},
    {"SmlTime", eKIND::RECORD},
    {"smlList", eKIND::RECORD},
    {"parName", eKIND::UINT64},
    {"procParVal", eKIND::RECORD},
    {"extFlag", eKIND::BOOL},
    {"extLen", eKIND::UINT},
};

const FieldRow* FindField(std::string_view label)
{
    static const auto kIndex = [] {
        std::unordered_map<std::string_view, FieldRow> index;
        for (const FieldRow& row : kFields)
            index.emplace(row.pcLabel, row);
        for (const SmlListLabels& list : SML_LISTS)
            index.emplace(list.pcList, FieldRow{list.pcList, eKIND::LIST, list.pcElement});
        return index;
    }();
    const auto found = kIndex.find(label);
    return found != kIndex.end() ? &found->second : nullptr;
}

class cBuilder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, cBuilder>
{
public:
    bool StartObject() { return Open(nullptr); }
    bool EndObject(rapidjson::SizeType) { return Close(); }
    bool StartArray()
    {
        if (levels.empty() || Field().kind != eKIND::LIST)
            return Wrong("an array");
        return Open(FindField(Field().pcElement));
    }
    bool EndArray(rapidjson::SizeType) { return Close(); }

    bool Key(const char* text, rapidjson::SizeType size, bool)
    {
        const FieldRow* field = FindField({text, size});
        if (field == nullptr)
            return Fail("no field is called '" + std::string(text, std::min(size, kMaxTold)) + "'");
        levels.back().pField = field;
        return true;
    }

    bool Null() { return Wrong("null"); }
    bool Double(double) { return Wrong("a number that is no integer of 64 bits"); }
    bool Int(int v) { return Int64(v); }
    bool Uint(unsigned v) { return Uint64(v); }
    bool Bool(bool v)
    {
        if (levels.empty() || (Field().kind != eKIND::BOOL && Field().kind != eKIND::VALUE))
            return Wrong("a boolean");
        levels.back().rec.AppendBoolPar(Field().pcLabel, v, 0);
        return true;
    }
    bool Int64(std::int64_t v) // the negative ones
    {
        vorn::cRecord* rec = levels.empty() ? nullptr : &levels.back().rec;
        const bool fits = v >= std::numeric_limits<int>::min();
        if (rec != nullptr && fits && (Field().kind == eKIND::SINT || Field().kind == eKIND::VALUE))
            rec->AppendSIntPar(Field().pcLabel, static_cast<int>(v), 0);
        else if (rec != nullptr && Field().kind == eKIND::VALUE)
            rec->AppendSInt64Par(Field().pcLabel, v, 0);
        else
            return Wrong("this negative number");
        return true;
    }
    bool Uint64(std::uint64_t v)
    {
        if (levels.empty())
            return Wrong("a number");
        vorn::cRecord& rec = levels.back().rec;
        const eKIND kind = Field().kind;
        const bool fits = v <= std::numeric_limits<unsigned>::max();
        if (fits && (kind == eKIND::UINT || kind == eKIND::VALUE))
            rec.AppendUIntPar(Field().pcLabel, static_cast<unsigned>(v), 0);
        else if (kind == eKIND::UINT64 || kind == eKIND::VALUE)
            rec.AppendUInt64Par(Field().pcLabel, v, 0);
        else if (kind == eKIND::SINT && v <= std::numeric_limits<int>::max())
            rec.AppendSIntPar(Field().pcLabel, static_cast<int>(v), 0);
        else
            return Wrong(kind == eKIND::UINT || kind == eKIND::SINT ? "so large a number"
                                                                    : "a number");
        return true;
    }
    bool String(const char* text, rapidjson::SizeType size, bool)
    {
        if (levels.empty())
            return Wrong("a string");
        const eKIND kind = Field().kind;
        if (kind != eKIND::TEXT && kind != eKIND::DATA && kind != eKIND::VALUE)
            return Wrong("a string");
        std::string bytes;
        cHexReader hex;
        if (kind == eKIND::TEXT)
            bytes.assign(text, size);
        else if (!hex.Read({text, size}, bytes) || hex.HasHalfByte())
            return Wrong("a string that is not hex");
        levels.back().rec.AppendDataPar(Field().pcLabel, bytes.data(),
                                        static_cast<int>(bytes.size()), 0);
        return true;
    }

    vorn::cRecord record; // when the text has ended
    std::string error;

private:
    struct Level {
        vorn::cRecord rec;
        const FieldRow* pField = nullptr; // of the next value; in an array, of its elements
    };

    const FieldRow& Field() const { return *levels.back().pField; }

    // element: of an array; null for an object.
    bool Open(const FieldRow* element)
    {
        if (element == nullptr && !levels.empty() && Field().kind != eKIND::RECORD &&
            Field().kind != eKIND::VALUE)
            return Wrong("an object");
        if (levels.size() == kMaxJsonDepth)
            return Fail("nested deeper than " + std::to_string(kMaxJsonDepth) + " levels");
        levels.push_back({{}, element});
        return true;
    }
    bool Close()
    {
        vorn::cRecord rec = std::move(levels.back().rec);
        levels.pop_back();
        if (levels.empty())
            record = std::move(rec);
        else
            levels.back().rec.AppendRecordPar(Field().pcLabel, rec, 0);
        return true;
    }

    bool Wrong(const char* what)
    {
        if (levels.empty())
            return Fail("is no JSON object");
        return Fail(std::string("'") + Field().pcLabel + "' cannot be " + what);
    }
    bool Fail(std::string text)
    {
        error = std::move(text);
        return false;
    }

    std::vector<Level> levels;
};

} // namespace

bool ReadRecord(std::string_view line, vorn::cRecord& record, std::string& error)
{
    rapidjson::MemoryStream stream(line.data(), line.size());
    rapidjson::Reader reader;
    cBuilder builder;
    const rapidjson::ParseResult result =
        reader.Parse<rapidjson::kParseIterativeFlag>(stream, builder);
    if (result.IsError()) {
        error = builder.error;
        if (error.empty())
            error = "column " + std::to_string(result.Offset() + 1) + ": " +
                    rapidjson::GetParseError_En(result.Code());
        return false;
    }
    if (stream.Tell() != line.size()) { // the parser takes a zero byte for the end
        error = "column " + std::to_string(stream.Tell() + 1) + ": a zero byte";
        return false;
    }
    record = builder.record;
    return true;
}

} // namespace tool
