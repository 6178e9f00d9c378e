// See message_encoder.h. A field that is empty and one that is missing are the same thing in SML,
// and so they are in the comparison.
#include "tools/encoding/message_encoder.h"

#include "tools/encoding/record_reader.h"
#include "tools/reading/keys.h"
#include "tools/reading/reading.h"
#include "tools/reading/status.h"

#include <algorithm>
#include <map>
#include <memory>

namespace tool
{
namespace
{

using Encoder = int (*)(vorn::cRecord& body, vorn::cRecord& header, vorn::cRecord& result);

template <int kChoice>
int EncodeProfile(vorn::cRecord& body, vorn::cRecord& header, vorn::cRecord& result)
{
    return Encode_GetProfile_Request(body, header, result, kChoice);
}

struct EncoderRow {
    unsigned uiIdentifier;
    Encoder Encode;
    unsigned uiLongest; // message in bytes
};

const EncoderRow* FindEncoder(unsigned identifier) noexcept
{
    static constexpr EncoderRow kEncoders[] = {
        {SML_OPEN_REQ, Encode_Open_Request, SML_MAX_ENCODED_ENVELOPE},
        {SML_OPEN_RES, Encode_Open_Response, SML_MAX_ENCODED_ENVELOPE},
        {SML_CLOSE_REQ, Encode_Close_Request, SML_MAX_ENCODED_ENVELOPE},
        {SML_CLOSE_RES, Encode_Close_Response, SML_MAX_ENCODED_ENVELOPE},
        {SML_GET_PROFILE_PACK_REQ, EncodeProfile<SML_GET_PROFILE_PACK_REQ>,
         SML_MAX_ENCODED_REQUEST},
        {SML_GET_PROFILE_LIST_REQ, EncodeProfile<SML_GET_PROFILE_LIST_REQ>,
         SML_MAX_ENCODED_REQUEST},
        {SML_GET_PROFILE_LIST_RES, Encode_GetProfileList_Response, SML_MAX_ENCODED_LIST},
        {SML_GET_PROC_PAR_REQ, Encode_GetProcPar_Request, SML_MAX_ENCODED_REQUEST},
        {SML_GET_PROC_PAR_RES, Encode_GetProcPar_Response, SML_MAX_ENCODED_TREE},
        {SML_SET_PROC_PAR_REQ, Encode_SetProcPar_Request, SML_MAX_ENCODED_TREE},
        {SML_GET_LIST_REQ, Encode_GetList_Request, SML_MAX_ENCODED_REQUEST},
        {SML_GET_LIST_RES, Encode_GetList_Response, SML_MAX_ENCODED_LIST},
        {SML_ATTENTION_RES, Encode_Attention_Response, SML_MAX_ENCODED_ENVELOPE},
    };
    for (const auto& row : kEncoders) {
        if (row.uiIdentifier == identifier)
            return &row;
    }
    return nullptr;
}

// ---- Comparing

constexpr std::string_view kPartNumber = "extMsgPart"; // of the transmission, not of the message

bool SaysNothing(const vorn::cRecordPar& par)
{
    switch (par.GetType(1)) {
    case quarn::KIND_DATA:
        return par.GetSize() == 0;
    case quarn::KIND_RECORD:
        return Nested(par).begin() == Nested(par).end();
    default:
        return par.GetName() == kPartNumber;
    }
}

std::size_t CountFields(const vorn::cRecord& record)
{
    return static_cast<std::size_t>(
        std::count_if(record.begin(), record.end(),
                      [](const vorn::cRecordPar& par) { return !SaysNothing(par); }));
}

const vorn::cRecordPar* Difference(const vorn::cRecord& meant, const vorn::cRecord& read);

bool SameValue(const vorn::cRecordPar& meant, const vorn::cRecordPar& read)
{
    if (meant.GetType(1) != quarn::KIND_RECORD || read.GetType(1) != quarn::KIND_RECORD)
        return meant == read;
    const vorn::cRecord a = Nested(meant);
    const vorn::cRecord b = Nested(read);
    if (IsList(meant.GetName()))
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameValue);
    return Difference(a, b) == nullptr && CountFields(a) == CountFields(b);
}

// The first field of meant that read does not say; null when there is none. Order does not count.
const vorn::cRecordPar* Difference(const vorn::cRecord& meant, const vorn::cRecord& read)
{
    for (const vorn::cRecordPar& par : meant) {
        const vorn::cRecordPar* other = FindIn(read, par.GetName());
        if (!SaysNothing(par) && (other == nullptr || !SameValue(par, *other)))
            return &par;
    }
    return nullptr;
}

// ---- What is meant

// A record that was read from a meter stands for its whole message.
bool IsWhole(const vorn::cRecord& record, unsigned identifier, std::string& error)
{
    const vorn::cRecordPar* par = FindIn(record, "SmlStatus");
    if (par == nullptr)
        return true;
    const vorn::cRecord status = Nested(*par);
    const vorn::cRecordPar* code = FindIn(status, "Error");
    if (code != nullptr && code->GetSInt() != SML_STATUS_OK) {
        error = std::string("the message was bad when it was read: ") +
                StatusMeaning(code->GetSInt()) + " (status " + std::to_string(code->GetSInt()) +
                ")";
        return false;
    }
    const vorn::cRecordPar* cast = FindIn(status, "Cast");
    if (cast != nullptr && cast->GetSInt() < 0 && identifier != SML_CLOSE_REQ) {
        error = "one packet of a longer message";
        return false;
    }
    return true;
}

std::string BytesIn(const vorn::cRecord& record, const char* name)
{
    return std::string(BytesOf(record.GetFirstPar(name, 0, 0)));
}

// What the parser makes of the bytes of a file that goes on or ends: its records, and whether it
// has refused any of it.
bool Parse(const std::string& bytes, std::map<int, vorn::cRecord>& records)
{
    const auto parser = std::make_unique<cSMLP>(1);
    vorn::cRecord piece;
    piece.AppendUIntPar("SmltFlags", BUF_FLAG_FIRST, 0);
    piece.AppendDataPar("SmlRawData", bytes.data(), static_cast<int>(bytes.size()), 0);
    int count = 0;
    return parser->SmlParser(piece, records, count) >= 0;
}

} // namespace

cMessageEncoder::cMessageEncoder()
{
    vorn::cRecord header;
    header.AppendDataPar("transactionId", "0", 1, 0);
    header.AppendUIntPar("groupNo", 0, 0);
    header.AppendUIntPar("abortOnError", 0, 0);
    vorn::cRecord body;
    for (const char* label : {"reqFileId", "serverId"})
        body.AppendDataPar(label, "0", 1, 0);
    vorn::cRecord result;
    Encode_Open_Response(body, header, result);
    openMessage = BytesIn(result, "SmlMsgRawData");
}

bool cMessageEncoder::Encode(const vorn::cRecord& record, EncodedMessage& message,
                             std::string& error) const
{
    const vorn::cRecordPar* par = FindIn(record, "SmlMsgHeader");
    vorn::cRecord header = par != nullptr ? Nested(*par) : vorn::cRecord();
    const vorn::cRecordPar* id = FindIn(header, "smlMsgIdentifier");
    if (id == nullptr) {
        error = "no message: 'smlMsgIdentifier' in 'SmlMsgHeader' is missing";
        return false;
    }
    const unsigned identifier = id->GetUInt();
    const quarn::schema::Message* kind = quarn::schema::FindMessage(identifier);
    const EncoderRow* encoder = FindEncoder(identifier);
    if (encoder == nullptr) {
        error = kind != nullptr ? std::string("a ") + kind->pcName + " cannot be encoded"
                                : "no message is called " + std::to_string(identifier);
        return false;
    }
    if (!IsWhole(record, identifier, error))
        return false;
    par = FindIn(record, kind->label.data());
    if (par == nullptr) {
        error = std::string("'").append(kind->label) + "' is missing";
        return false;
    }
    const vorn::cRecord meant = Nested(*par);
    vorn::cRecord body = meant;
    if (const vorn::cRecordPar* raw = FindIn(meant, "rawdata"))
        body.AppendDataPar("RawData", raw->GetData(), raw->GetSize(), 0); // as the encoder calls it
    vorn::cRecord result;
    if (encoder->Encode(body, header, result) != SML_ENCODE_OK) {
        error = "out of memory";
        return false;
    }
    if (!SmlMessageIsWhole(result)) {
        error = std::string("a ") + kind->pcName + " of more than " +
                std::to_string(encoder->uiLongest) +
                " bytes cannot be encoded: put less into one message";
        return false;
    }
    message.bytes = BytesIn(result, "SmlMsgRawData");
    const unsigned flags = result.GetFirstPar("SmltFlags", 0, 0).GetUInt();
    message.bFirst = (flags & BUF_FLAG_FIRST) != 0;
    message.bLast = (flags & BUF_FLAG_LAST) != 0;
    return Verify(header, meant, identifier, message, error);
}

bool cMessageEncoder::Verify(const vorn::cRecord& header, const vorn::cRecord& body,
                             unsigned identifier, const EncodedMessage& message,
                             std::string& error) const
{
    std::map<int, vorn::cRecord> records;
    const bool accepted =
        Parse(message.bFirst ? message.bytes : openMessage + message.bytes, records);
    const std::size_t others = message.bFirst ? 0 : 1;
    const MessageInfo info =
        records.size() > others ? DescribeMessage(records.rbegin()->second) : MessageInfo();
    if (!accepted || info.iError != SML_STATUS_OK) {
        error = std::string("what it makes cannot be read: ") +
                StatusMeaning(info.iError != SML_STATUS_OK ? info.iError : SML_STATUS_FE01);
        return false;
    }
    if (info.pBody == nullptr || info.uiIdentifier != identifier) {
        error = "what it makes is incomplete: a value is missing";
        return false;
    }
    const vorn::cRecord& last = records.rbegin()->second;
    const vorn::cRecord readHeader = Nested(*FindIn(last, "SmlMsgHeader"));
    for (const char* label : {"transactionId", "groupNo", "abortOnError"}) {
        if (header.GetFirstPar(label, 0, 0) != readHeader.GetFirstPar(label, 0, 0)) {
            error = std::string("'") + label + "' cannot be encoded as it is";
            return false;
        }
    }
    const vorn::cRecord readBody = Nested(*info.pBody);
    if (const vorn::cRecordPar* field = Difference(body, readBody)) {
        error = std::string("'") + field->GetName() + "' cannot be encoded as it is";
        return false;
    }
    if (CountFields(body) != CountFields(readBody)) {
        error = "a field stands there twice";
        return false;
    }
    return true;
}

} // namespace tool
