// See content.h.
#include "bench/content.h"

#include <nlohmann/json.hpp>

#include <cstdlib>

namespace bench
{
namespace
{

vorn::cRecord Header(unsigned number)
{
    const std::string id = "tx-000" + std::to_string(number);
    vorn::cRecord header;
    header.AppendDataPar("transactionId", id.data(), static_cast<int>(id.size()), 0);
    header.AppendUIntPar("groupNo", 0, 0);
    header.AppendUIntPar("abortOnError", 0, 0);
    return header;
}

void AppendBytes(vorn::cRecord& rec, const char* label, std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 37 + 10);
    rec.AppendDataPar(label, bytes.data(), static_cast<int>(size), 0);
}

vorn::cRecord Time(unsigned seconds)
{
    vorn::cRecord time;
    time.AppendUIntPar("type", 1, 0);
    time.AppendUIntPar("value", seconds, 0);
    return time;
}

// The six entries of a household meter in turn: maker, device, two energies, power, public key.
vorn::cRecord Entry(unsigned number)
{
    static constexpr unsigned long long kNames[] = {0x8181C78203FF, 0x0100000009FF, 0x0100010800FF,
                                                    0x0100020800FF, 0x0100100700FF, 0x8181C78205FF};
    const unsigned kind = number % 6;
    vorn::cRecord entry;
    entry.AppendUInt64Par("objName", kNames[kind] + ((number / 6ULL) << 8), 0);
    if (kind == 2)
        entry.AppendUInt64Par("status", 0x182, 0);
    if (kind >= 2 && kind <= 4) {
        entry.AppendUIntPar("unit", kind == 4 ? 27 : 30, 0);
        entry.AppendSIntPar("scaler", kind == 4 ? 0 : -1, 0);
    }
    switch (kind) {
    case 2:
    case 3:
        entry.AppendSInt64Par("value", 147981129LL + number, 0);
        break;
    case 4:
        entry.AppendSIntPar("value", 412, 0);
        break;
    default:
        AppendBytes(entry, "value", kind == 0 ? 3 : kind == 1 ? 10 : 48);
    }
    return entry;
}

std::vector<Message> MakeMessages(std::int64_t entries)
{
    vorn::cRecord open;
    AppendBytes(open, "reqFileId", 4);
    AppendBytes(open, "serverId", 10);
    vorn::cRecord valList;
    for (std::int64_t i = 0; i < entries; ++i)
        valList.AppendRecordPar("valListEntry", Entry(static_cast<unsigned>(i)), 0);
    vorn::cRecord list;
    AppendBytes(list, "serverId", 10);
    list.AppendUInt64Par("listName", 0x0100620AFFFFULL, 0);
    list.AppendRecordPar("actSensorTime", Time(72214509), 0);
    list.AppendRecordPar("valList", valList, 0);
    return {{Encode_Open_Response, Header(1), open},
            {Encode_GetList_Response, Header(2), list},
            {Encode_Close_Response, Header(3), vorn::cRecord()}};
}

nlohmann::ordered_json Transcoded(const vorn::cRecord& rec);

nlohmann::ordered_json Transcoded(const vorn::cRecordPar& par)
{
    switch (par.GetType(1)) {
    case quarn::KIND_UINT:
    case quarn::KIND_UINT64:
        return par.GetUInt64();
    case quarn::KIND_SINT:
    case quarn::KIND_SINT64:
        return par.GetSInt64();
    case quarn::KIND_BOOL:
        return par.GetBool();
    case quarn::KIND_DATA:
        return nlohmann::ordered_json::binary(
            {par.GetData(), par.GetData() + static_cast<std::size_t>(par.GetSize())});
    default:
        vorn::cRecord nested;
        par.GetRecord(nested);
        return Transcoded(nested);
    }
}

nlohmann::ordered_json Transcoded(const vorn::cRecord& rec)
{
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (const vorn::cRecordPar& par : rec) {
        if (par.GetName() == std::string("SmlMsgRawData"))
            continue;
        if (rec.GetParCount(par.GetName(), 0, 0) > 1)
            object[par.GetName()].push_back(Transcoded(par));
        else
            object[par.GetName()] = Transcoded(par);
    }
    return object;
}

Content Make(std::int64_t entries)
{
    Content content;
    content.messages = MakeMessages(entries);
    for (Message& message : content.messages) {
        vorn::cRecord result;
        message.pEncode(message.body, message.header, result);
        const vorn::cRecordPar raw = result.GetFirstPar("SmlMsgRawData", 0, 0);
        content.strFile.append(raw.GetData(), static_cast<std::size_t>(raw.GetSize()));
    }
    cSMLP parser(1);
    if (!Parse(parser, content.strFile, content.records))
        std::abort();
    nlohmann::ordered_json file = nlohmann::ordered_json::array();
    for (const auto& [number, record] : content.records)
        file.push_back(Transcoded(record));
    content.cbor = nlohmann::ordered_json::to_cbor(file);
    const std::vector<std::uint8_t> packed = nlohmann::ordered_json::to_msgpack(file);
    content.strMsgpack.assign(packed.begin(), packed.end());
    return content;
}

} // namespace

Content& ContentOf(std::int64_t entries)
{
    static Content six = Make(6);
    static Content hundred = Make(100);
    return entries == 6 ? six : hundred;
}

vorn::cRecord Piece(unsigned flags, const char* bytes, std::size_t size)
{
    vorn::cRecord piece;
    piece.AppendUIntPar("SmltFlags", flags, 0);
    piece.AppendDataPar("SmlRawData", bytes, static_cast<int>(size), 0);
    return piece;
}

vorn::cRecord WholeFile(const std::string& file)
{
    return Piece(BUF_FLAG_FIRST | BUF_FLAG_LAST, file.data(), file.size());
}

bool Parse(cSMLP& parser, const std::string& file, Records& records, int messages)
{
    vorn::cRecord in = WholeFile(file);
    int count = 0;
    return parser.SmlParser(in, records, count) == SMLP_FILE_COMPLETE && count == messages;
}

} // namespace bench
