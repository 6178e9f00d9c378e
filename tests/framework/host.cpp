// A host that takes every wing of the library along and prints all it gets: the records of a
// meter's telegrams, the bytes of what it encodes of them, a parameter tree whose long value
// travels in packets, and the trace. It is built against either framework, and has to print the
// same.
#include "tests/support/record_text.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace
{

using Encoder = int (*)(vorn::cRecord&, vorn::cRecord&, vorn::cRecord&);

constexpr struct {
    const char* pcLabel;
    Encoder Encode;
} kEncoders[] = {{"SmlOpenRes", Encode_Open_Response},
                 {"SmlGetListRes", Encode_GetList_Response},
                 {"SmlCloseRes", Encode_Close_Response},
                 {"SmlSetProcParReq", Encode_SetProcPar_Request}};

struct Host {
    cSMLTdec decoder{SMLT_MODE_TP};
    cSMLTenc encoder{SMLT_MODE_TP};
    cSMLP parser{7};

    // One message: its record, itself through its class, its bytes and its framed bytes.
    void Tell(const vorn::cRecord& message)
    {
        std::printf("record %s\n", message.ToString().c_str());
        vorn::cRecord header, body, result, again, channel, content;
        message.GetFirstPar("SmlMsgHeader", 0, 0).GetRecord(header);
        if (message.GetFirstPar("SmlGetListRes", 0, 0).IsValid()) {
            cSmlGetListRes(message).ToRecord(again);
            cSmlListEntry(test::Rec("value=u1 value=u2 objName=U1")).ToRecord(again);
            std::printf("class %s\n", again.ToString().c_str());
        }
        for (const auto& row : kEncoders) {
            if (!message.GetFirstPar(row.pcLabel, 0, 0).GetRecord(body))
                continue;
            std::printf("encoded %d %s\n", row.Encode(body, header, result),
                        result.ToString().c_str());
            const vorn::cRecordPar raw = result.GetFirstPar("SmlMsgRawData", 0, 0);
            channel.AppendDataPar("RawData", raw.GetData(), raw.GetSize(), 0);
            content.AppendUIntPar("SmltFlags", result.GetFirstPar("SmltFlags", 0, 0).GetUInt(), 0);
            content.AppendRecordPar("IfRec", channel, 0);
            vorn::cMsg out(content);
            std::printf("framed %d %s\n", encoder.Encode(out), out.GetRecord().ToString().c_str());
        }
    }

    void Parse(vorn::cRecord& payload)
    {
        std::map<int, vorn::cRecord> messages;
        int count = 0;
        std::printf("parser %d\n", parser.SmlParser(payload, messages, count));
        for (const auto& [number, message] : messages)
            Tell(message);
    }

    // Bytes of frames, in pieces of 100.
    void Receive(const std::string& bytes)
    {
        for (std::size_t at = 0; at < bytes.size();) {
            const std::string piece = bytes.substr(at, 100);
            vorn::cRecord channel, content, payload;
            channel.AppendDataPar("RawData", piece.data(), static_cast<int>(piece.size()), 0);
            content.AppendRecordPar("IfRec", channel, 0);
            vorn::cMsg in(content);
            std::printf("decoder %d\n", decoder.Decode(in, channel, payload));
            at += piece.size() - static_cast<std::size_t>(decoder.GetRemaining());
            Parse(payload);
        }
    }

    // A file with a parameter tree two levels deep, the value of which comes in packets.
    void Tree()
    {
        std::string children;
        for (int i = 0; i < 6; i++)
            children += "parTree={parName=U0x0100010800FF procParVal={type=u1 value=x" +
                        std::string(2380, '7') + "}} ";
        const std::string name = "U0x8181C78F01FF ";
        vorn::cRecord header = test::Rec("transactionId=x7431 groupNo=u0 abortOnError=u0");
        vorn::cRecord open = test::Rec("clientId=x636C reqFileId=x66");
        vorn::cRecord body =
            test::Rec("serverId=x0A01 parTreePath={path_Entry=" + name +
                      "} parTree={parName=" + name + "child_List={" + children + "}}");
        vorn::cRecord close, file, result;
        std::string bytes;
        const auto add = [&](int rc, const vorn::cRecord& result) {
            const vorn::cRecordPar raw = result.GetFirstPar("SmlMsgRawData", 0, 0);
            std::printf("part %d\n", rc);
            bytes.append(raw.GetData(), static_cast<std::size_t>(raw.GetSize()));
        };
        add(Encode_Open_Request(open, header, result), result);
        add(Encode_SetProcPar_Request(body, header, result), result);
        add(Encode_Close_Request(close, header, result), result);
        file.AppendUIntPar("t", 1, 0); // a name shorter than those that are sought
        file.AppendUIntPar("SmltFlags", BUF_FLAG_FIRST | BUF_FLAG_LAST, 0);
        file.AppendDataPar("SmlRawData", bytes.data(), static_cast<int>(bytes.size()), 0);
        Parse(file);
    }
};

} // namespace

int main(int, char** argv)
{
    for (vorn::cUnit* unit : {LibSmle, LibSmlp, LibSmlt, LibQuarn})
        unit->iLevel = 8;
    std::ifstream file(argv[1], std::ios::binary);
    Host host;
    host.Receive({std::istreambuf_iterator<char>(file), {}});
    host.Tree();
}
