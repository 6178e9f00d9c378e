// Reads what a meter sends from a file or a serial device and prints the values of every list
// response: one line each, with the object's name in hex, the value and its unit code.
//
//   read_list examples/household.bin
#include "quarn/quarn.h"

#include <cmath>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <string>

namespace
{

// The getters of a value succeed for the kind that it has, and for no other.
std::string ToText(const cSmlValue& value, int scaler)
{
    unsigned kind = 0;
    value.GetType(kind);
    std::string bytes;
    if (value.GetString(bytes))
        return std::to_string(bytes.size()) + " bytes";
    unsigned u = 0;
    int s = 0;
    unsigned long long u64 = 0;
    long long s64 = 0;
    const double factor = std::pow(10, scaler);
    if (value.GetUInt(u))
        return std::to_string(u * factor);
    if (value.GetSInt(s))
        return std::to_string(s * factor);
    if (value.GetUInt64(u64))
        return std::to_string(static_cast<double>(u64) * factor);
    if (value.GetSInt64(s64))
        return std::to_string(static_cast<double>(s64) * factor);
    return "a value of kind " + std::to_string(kind);
}

void Print(const cSmlGetListRes& response)
{
    cSmlList list;
    int count = 0;
    if (!response.GetValList(list) || !list.GetListCount(count))
        return;
    for (int i = 0; i < count; ++i) {
        cSmlListEntry entry;
        cSmlValue value;
        unsigned long long name = 0;
        if (!list.GetListEntry(entry, i) || !entry.GetObjName(name) || !entry.GetValue(value))
            continue;   // not an entry that could be read
        int scaler = 0; // both stay 0 when the entry has none
        unsigned unit = 0;
        entry.GetScaler(scaler);
        entry.GetUnit(unit);
        std::cout << std::hex << std::setfill('0') << std::setw(12) << name << std::dec << "  "
                  << ToText(value, scaler) << "  unit " << unit << '\n';
    }
}

// From the meter's frames to message records, and from those to the class of a list response.
class Receiver
{
public:
    void Take(const char* bytes, int size)
    {
        int result = SMLT_DECODE_LEFT;
        while (result == SMLT_DECODE_LEFT) { // bytes of the next frame are left
            vorn::cRecord transport;
            transport.AppendDataPar("RawData", bytes, size, 0);
            vorn::cMsg message;
            message.GetRecord().AppendRecordPar("IfRec", transport, 0);
            vorn::cRecord unused;
            vorn::cRecord payload;
            result = decoder.Decode(message, unused, payload);
            Parse(payload);
            bytes += size - decoder.GetRemaining();
            size = decoder.GetRemaining();
        }
    }

private:
    void Parse(vorn::cRecord& payload)
    {
        std::map<int, vorn::cRecord> records;
        int count = 0;
        parser.SmlParser(payload, records, count);
        for (const auto& [number, record] : records) {
            int error = 0;
            if (!cSmlMsgStatus(record).GetMsgError(error) || error != 0)
                std::cerr << "a message was damaged on its way\n";
            else if (record.GetFirstPar("SmlGetListRes", 0, 0).IsValid())
                Print(cSmlGetListRes(record));
        }
    }

    cSMLTdec decoder{SMLT_MODE_TP};
    cSMLP parser{1};
};

} // namespace

int main(int argc, char** argv)
{
    std::ifstream in(argc == 2 ? argv[1] : "", std::ios::binary);
    if (!in) {
        std::cerr << "usage: read_list FILE\n";
        return 2;
    }
    Receiver receiver;
    char bytes[256];
    while (in.read(bytes, sizeof bytes), in.gcount() > 0)
        receiver.Take(bytes, static_cast<int>(in.gcount()));
    return 0;
}
