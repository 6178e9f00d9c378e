// Asks a gateway for a profile: builds a file of three messages (open, get-profile-list request,
// close), frames it and writes it to standard output, as a host would write it to its line.
//
//   request_profile | quarn decode --format records
#include "quarn/quarn.h"

#include <iostream>
#include <string>

namespace
{

const std::string kServer("\x0A\x01XYZ\0\0\x12\x34\x56", 10);

void AppendBytes(vorn::cRecord& to, const char* label, const std::string& bytes)
{
    to.AppendDataPar(label, bytes.data(), static_cast<int>(bytes.size()), 0);
}

vorn::cRecord Header(unsigned number)
{
    vorn::cRecord header;
    AppendBytes(header, "transactionId", "request-" + std::to_string(number));
    header.AppendUIntPar("groupNo", number, 0);
    header.AppendUIntPar("abortOnError", 0, 0);
    return header;
}

vorn::cRecord OpenBody()
{
    vorn::cRecord body;
    AppendBytes(body, "clientId", "host");
    AppendBytes(body, "reqFileId", "1");
    AppendBytes(body, "serverId", kServer);
    return body;
}

// The values of one object over an hour, from the profile that the path leads to.
vorn::cRecord ProfileBody()
{
    vorn::cRecord body;
    AppendBytes(body, "serverId", kServer);
    cSmlTime time;
    time.SetTime(2, 1700000000); // a timestamp, in seconds
    time.ToRecord(body, "beginTime");
    time.SetTime(2, 1700003600);
    time.ToRecord(body, "endTime");
    cSmlTreePath path;
    path.SetPathEntry(0x8181C78611FF);
    path.ToRecord(body);
    cSmlObjList objects;
    objects.SetListEntry(0x0100010800FF);
    objects.ToRecord(body);
    return body;
}

class Line
{
public:
    // Frames an encoded message; the first and the last of a file open and end the frame.
    bool Send(const vorn::cRecord& encoded)
    {
        if (!SmlMessageIsWhole(encoded)) {
            std::cerr << "the message is too long for its kind: ask for less\n";
            return false;
        }
        const vorn::cRecordPar raw = encoded.GetFirstPar("SmlMsgRawData", 0, 0);
        vorn::cRecord transport;
        transport.AppendDataPar("RawData", raw.GetData(), raw.GetSize(), 0);
        vorn::cMsg message;
        message.GetRecord().AppendUIntPar("SmltFlags",
                                          encoded.GetFirstPar("SmltFlags", 0, 0).GetUInt(), 0);
        message.GetRecord().AppendRecordPar("IfRec", transport, 0);
        if (encoder.Encode(message) != SMLT_ENCODE_DONE)
            return false;
        const vorn::cRecordPar framed =
            message.GetRecord().GetFirstParByPath("IfRec.RawData", ".", 0, 0);
        std::cout.write(framed.GetData(), framed.GetSize());
        return std::cout.good();
    }

private:
    cSMLTenc encoder{SMLT_MODE_TP};
};

} // namespace

int main()
{
    Line line;
    vorn::cRecord encoded;
    vorn::cRecord header = Header(1);
    vorn::cRecord body = OpenBody();
    bool sent = Encode_Open_Request(body, header, encoded) == SML_ENCODE_OK && line.Send(encoded);
    header = Header(2);
    body = ProfileBody();
    sent = sent &&
           Encode_GetProfile_Request(body, header, encoded, SML_GET_PROFILE_LIST_REQ) ==
               SML_ENCODE_OK &&
           line.Send(encoded);
    header = Header(3);
    body = vorn::cRecord();
    sent =
        sent && Encode_Close_Request(body, header, encoded) == SML_ENCODE_OK && line.Send(encoded);
    return sent ? 0 : 1;
}
