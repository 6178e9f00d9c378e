// Turns a profile-list response into a list response, for a host that knows only the latter: each
// object of the period becomes a list entry with the status and the time of the period.
//
//   profile_to_list
#include "quarn/quarn.h"

#include <iostream>

namespace
{

// A message record with a profile-list response. A host has it from the parser.
vorn::cRecord Received()
{
    vorn::cRecord body;
    body.AppendDataPar("serverId", "meter", 5, 0);
    cSmlTime time;
    time.SetTime(2, 1700000900);
    time.ToRecord(body, "actTime");
    body.AppendUIntPar("regPeriod", 900, 0);
    cSmlTreePath path;
    path.SetPathEntry(0x8181C78611FF);
    path.ToRecord(body);
    time.SetTime(2, 1700000000);
    time.ToRecord(body, "valTime");
    body.AppendUInt64Par("status", 7, 0);
    cSmlPeriodList periods;
    for (const unsigned watts : {250U, 1800U}) {
        vorn::cRecord value; // values are made from records
        value.AppendUIntPar("value", watts, 0);
        cSmlPeriodEntry entry;
        entry.SetObjName(0x0100100700FF);
        entry.SetUnit(27);
        entry.SetScaler(0);
        entry.SetValue(cSmlValue(value));
        periods.SetListEntry(entry);
    }
    periods.ToRecord(body);
    vorn::cRecord message;
    message.AppendRecordPar("SmlGetProfListRes", body, 0);
    return message;
}

} // namespace

int main()
{
    const cSmlGetProfListRes profile(Received());
    cSmlGetListRes list;
    list = profile;
    if (!list.IsValid()) {
        std::cerr << "a field is missing\n";
        return 1;
    }
    vorn::cRecord message; // gains the body, ready for Encode_GetList_Response
    list.ToRecord(message);
    std::cout << message.ToString2(2, 0) << '\n';
    return 0;
}
