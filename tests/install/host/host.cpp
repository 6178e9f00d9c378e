// A small host of the installed library: both roads once. It reads a file of transport frames,
// tells the energy readings of the good messages, and sends an attention response for each bad one.
#include <quarn/quarn.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace
{

int iLines = 0; // of trace

void TellReadings(const vorn::cRecord& message)
{
    if (!message.GetFirstPar("SmlGetListRes", 0, 0).IsValid())
        return;
    const cSmlGetListRes response(message);
    cSmlList list;
    int count = 0;
    if (!response.IsValid() || !response.GetValList(list) || !list.GetListCount(count))
        return;
    for (int i = 0; i < count; i++) {
        cSmlListEntry entry;
        unsigned long long name = 0;
        long long energy = 0;
        cSmlValue value;
        if (list.GetListEntry(entry, i) && entry.GetObjName(name) && name == 0x0100010800FF &&
            entry.GetValue(value) && value.GetSInt64(energy))
            std::printf("1.8.0 %lld\n", energy);
    }
}

void SendAttention(const vorn::cRecord& message)
{
    vorn::cRecord header, body, result;
    message.GetFirstPar("SmlMsgHeader", 0, 0).GetRecord(header);
    body.AppendDataPar("serverId", "\x0a\x01", 2, 0);
    body.AppendUInt64Par("attentionNo", 0x8181C7C7FE00, 0);
    const int rc = Encode_Attention_Response(body, header, result);
    std::printf("attention %d, %d bytes\n", rc,
                result.GetFirstPar("SmlMsgRawData", 0, 0).GetSize());
}

} // namespace

int main(int, char** argv)
{
    vorn::SetTraceSink([](const vorn::cUnit&, vorn::eLEVEL, const std::string&) { iLines++; });
    std::ifstream file(argv[1], std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    cSMLTdec transport(SMLT_MODE_TP);
    cSMLP parser(1);
    int result = SMLT_DECODE_LEFT;
    while (result == SMLT_DECODE_LEFT) {
        vorn::cRecord channel, content, payload;
        channel.AppendDataPar("RawData", bytes.data(), static_cast<int>(bytes.size()), 0);
        content.AppendRecordPar("IfRec", channel, 0);
        vorn::cMsg in(content);
        result = transport.Decode(in, channel, payload);
        bytes.erase(0, bytes.size() - static_cast<std::size_t>(transport.GetRemaining()));
        std::map<int, vorn::cRecord> messages;
        int count = 0;
        parser.SmlParser(payload, messages, count);
        for (const auto& [number, message] : messages) {
            vorn::cRecordPar error = message.GetFirstParByPath("SmlStatus.Error", ".", 0, 0);
            if (error.GetSInt() == SML_STATUS_OK)
                TellReadings(message);
            else
                SendAttention(message);
        }
    }
    std::printf("result %d, %d lines of trace\n", result, iLines);
}
