// See record_reader.h. The parser of the JSON text is iterative and calls the builder, which keeps
// the records that are not finished on a stack of its own: no line exhausts the program's.
#include "tools/encoding/record_reader.h"

#include "tools/input/hex_reader.h"
#include "tools/reading/keys.h"

#include <algorithm>
#include <limits>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <vector>

namespace tool
{
namespace
{

constexpr rapidjson::SizeType kMaxTold = 60; // bytes of a key that are shown

enum class eJSON { UINT, UINT64, SINT, BOOL, DATA, RECORD, LIST, VALUE, TEXT };

struct KeyRow {
    const char* pcLabel = nullptr;
    eJSON kind = eJSON::RECORD;
    const quarn::schema::Structure* pStructure = nullptr; // of a record or list
};

// Of the lines of events, around a record.
constexpr KeyRow kEventKeys[] = {
    {"event", eJSON::TEXT}, {"frame", eJSON::UINT64}, {"record", eJSON::RECORD},
    {"crc", eJSON::TEXT},   {"bytes", eJSON::UINT64}, {"messages", eJSON::UINT64},
};

KeyRow KeyOf(const quarn::schema::Element& element)
{
    const auto* const structure = element.pStructure;
    const auto kind = [&] {
        if (element.eType == quarn::schema::eTYPE::VALUE)
            return eJSON::VALUE;
        if (structure != nullptr)
            return structure->IsList() ? eJSON::LIST : eJSON::RECORD;
        switch (quarn::schema::KindOf(element)) {
        case quarn::KIND_UINT:
            return eJSON::UINT;
        case quarn::KIND_UINT64:
            return eJSON::UINT64;
        case quarn::KIND_SINT:
            return eJSON::SINT;
        case quarn::KIND_BOOL:
            return eJSON::BOOL;
        default:
            return eJSON::DATA;
        }
    };
    return {element.label.data(), kind(), structure};
}

// False when there is no such key; structure: the one that has it.
bool FindKey(const quarn::schema::Structure* structure, std::string_view label, KeyRow& key)
{
    for (const KeyRow& known : kEventKeys) {
        if (label == known.pcLabel) {
            key = known;
            return true;
        }
    }
    const quarn::schema::Element* const element = FindElement(structure, label);
    if (element != nullptr)
        key = KeyOf(*element);
    return element != nullptr;
}

class cBuilder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, cBuilder>
{
public:
    bool StartObject()
    {
        if (!levels.empty() && Current().kind != eJSON::RECORD && Current().kind != eJSON::VALUE)
            return Wrong("an object");
        return Open({}, levels.empty() ? nullptr : Current().pStructure);
    }
    bool EndObject(rapidjson::SizeType) { return Close(); }
    bool StartArray()
    {
        if (levels.empty() || Current().kind != eJSON::LIST)
            return Wrong("an array");
        return Open(KeyOf(*Current().pStructure->begin()), Current().pStructure);
    }
    bool EndArray(rapidjson::SizeType) { return Close(); }

    bool Key(const char* text, rapidjson::SizeType size, bool)
    {
        Level& level = levels.back();
        if (!FindKey(level.pStructure, {text, size}, level.key))
            return Fail("no field is called '" + std::string(text, std::min(size, kMaxTold)) + "'");
        return true;
    }

    bool Null() { return Wrong("null"); }
    bool Double(double) { return Wrong("a number that is no integer of 64 bits"); }
    bool Int(int v) { return Int64(v); }
    bool Uint(unsigned v) { return Uint64(v); }
    bool Bool(bool v)
    {
        if (levels.empty() || (Current().kind != eJSON::BOOL && Current().kind != eJSON::VALUE))
            return Wrong("a boolean");
        levels.back().rec.AppendBoolPar(Current().pcLabel, v, 0);
        return true;
    }
    bool Int64(std::int64_t v) // the negative ones
    {
        vorn::cRecord* rec = levels.empty() ? nullptr : &levels.back().rec;
        const bool fits = v >= std::numeric_limits<int>::min();
        if (rec != nullptr && fits &&
            (Current().kind == eJSON::SINT || Current().kind == eJSON::VALUE))
            rec->AppendSIntPar(Current().pcLabel, static_cast<int>(v), 0);
        else if (rec != nullptr && Current().kind == eJSON::VALUE)
            rec->AppendSInt64Par(Current().pcLabel, v, 0);
        else
            return Wrong("this negative number");
        return true;
    }
    bool Uint64(std::uint64_t v)
    {
        if (levels.empty())
            return Wrong("a number");
        vorn::cRecord& rec = levels.back().rec;
        const eJSON kind = Current().kind;
        const bool fits = v <= std::numeric_limits<unsigned>::max();
        if (fits && (kind == eJSON::UINT || kind == eJSON::VALUE))
            rec.AppendUIntPar(Current().pcLabel, static_cast<unsigned>(v), 0);
        else if (kind == eJSON::UINT64 || kind == eJSON::VALUE)
            rec.AppendUInt64Par(Current().pcLabel, v, 0);
        else if (kind == eJSON::SINT && v <= std::numeric_limits<int>::max())
            rec.AppendSIntPar(Current().pcLabel, static_cast<int>(v), 0);
        else
            return Wrong(kind == eJSON::UINT || kind == eJSON::SINT ? "so large a number"
                                                                    : "a number");
        return true;
    }
    bool String(const char* text, rapidjson::SizeType size, bool)
    {
        if (levels.empty())
            return Wrong("a string");
        const eJSON kind = Current().kind;
        if (kind != eJSON::TEXT && kind != eJSON::DATA && kind != eJSON::VALUE)
            return Wrong("a string");
        std::string bytes;
        cHexReader hex;
        if (kind == eJSON::TEXT)
            bytes.assign(text, size);
        else if (!hex.Read({text, size}, bytes) || hex.HasHalfByte())
            return Wrong("a string that is not hex");
        levels.back().rec.AppendDataPar(Current().pcLabel, bytes.data(),
                                        static_cast<int>(bytes.size()), 0);
        return true;
    }

    vorn::cRecord record; // when the text has ended
    std::string error;

private:
    struct Level {
        vorn::cRecord rec;
        KeyRow key; // of the next value; in an array, of its elements
        const quarn::schema::Structure* pStructure; // null where it is not known
    };

    const KeyRow& Current() const { return levels.back().key; }

    bool Open(const KeyRow& key, const quarn::schema::Structure* structure)
    {
        if (levels.size() == kMaxJsonDepth)
            return Fail("nested deeper than " + std::to_string(kMaxJsonDepth) + " levels");
        levels.push_back({{}, key, structure});
        return true;
    }
    bool Close()
    {
        vorn::cRecord rec = std::move(levels.back().rec);
        levels.pop_back();
        if (levels.empty())
            record = std::move(rec);
        else
            levels.back().rec.AppendRecordPar(Current().pcLabel, rec, 0);
        return true;
    }

    bool Wrong(const char* what)
    {
        if (levels.empty())
            return Fail("is no JSON object");
        return Fail(std::string("'") + Current().pcLabel + "' cannot be " + what);
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
