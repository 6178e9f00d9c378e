// --format records: one JSON object per line and event, complete and lossless. A record becomes an
// object whose keys are its labels in order; a list record becomes the array of its elements.
#include "tools/output/json.h"
#include "tools/output/output_format.h"
#include "tools/reading/keys.h"

#include <string_view>

namespace tool
{
namespace
{

void WriteValue(cJson& json, const vorn::cRecordPar& par);

template <class Record> // a record, or the parameter that holds one
void WriteRecord(cJson& json, const Record& record)
{
    json.StartObject();
    for (const vorn::cRecordPar& par : record) {
        json.Key(par.GetName());
        WriteValue(json, par);
    }
    json.EndObject();
}

void WriteValue(cJson& json, const vorn::cRecordPar& par)
{
    switch (par.GetType(1)) {
    case quarn::KIND_SINT:
    case quarn::KIND_SINT64:
        json.Int(par.GetSInt64());
        break;
    case quarn::KIND_BOOL:
        json.Bool(par.GetBool());
        break;
    case quarn::KIND_DATA:
        json.Hex(BytesOf(par));
        break;
    case quarn::KIND_RECORD:
        if (!IsList(par.GetName())) {
            WriteRecord(json, par);
            break;
        }
        json.StartArray();
        for (const vorn::cRecordPar& element : par)
            WriteValue(json, element);
        json.EndArray();
        break;
    default:
        json.Uint(par.GetUInt64());
        break;
    }
}

class cRecordsFormat : public cFormat
{
public:
    explicit cRecordsFormat(cOutput& output) : cFormat(output), json(output) {}

    bool IsComplete() const noexcept override { return true; }

    void Message(const Frame& frame, const MessageInfo&, const vorn::cRecord& record,
                 const std::vector<Reading>&) override
    {
        StartEvent("message", frame);
        json.Key("record");
        WriteRecord(json, record);
        EndEvent();
    }

    void FrameEnd(const Frame& frame) override
    {
        StartEvent("frame", frame);
        json.Key("crc");
        json.String(frame.bCrcOk ? "ok" : "error");
        json.Key("bytes");
        json.Uint(frame.ullBytes);
        json.Key("messages");
        json.Uint(frame.ullMessages);
        EndEvent();
    }

private:
    void StartEvent(std::string_view event, const Frame& frame)
    {
        json.StartObject();
        json.Key("event");
        json.String(event);
        json.Key("frame");
        json.Uint(frame.ullNumber);
    }
    void EndEvent()
    {
        json.EndObject();
        json.EndLine();
    }

    cJson json;
};

} // namespace

std::unique_ptr<cFormat> MakeRecordsFormat(cOutput& output, const FormatOptions&)
{
    return std::make_unique<cRecordsFormat>(output);
}

} // namespace tool
