// Every class that is a set of fields, as a table: what makes it valid, what it yields, writes and
// traces.
#ifndef TESTS_RECORDS_CLASS_TABLE_H
#define TESTS_RECORDS_CLASS_TABLE_H

#include "written.h"

#include <sstream>

namespace test
{

// Of an object, its copy and what it was assigned to: the fields that the getters yield, and
// "valid" if it is; and what the object writes.
struct Outcome {
    vorn::cRecord fields, copied, assigned, written;
};

// Appends what a getter yields under the next label, or what one of a triple does under the next
// three.
template <class C, class Owner, typename T>
void Gather(vorn::cRecord& out, const C& object, const std::string*& label,
            bool (Owner::*getter)(T&) const noexcept)
{
    T v{};
    if ((object.*getter)(v))
        Append(out, label->c_str(), v);
    ++label;
}
template <class C, class Owner>
void Gather(vorn::cRecord& out, const C& object, const std::string*& label,
            bool (Owner::*getter)(unsigned&, int&, long long&) const noexcept)
{
    unsigned u = 0;
    int s = 0;
    long long v = 0;
    if ((object.*getter)(u, s, v)) {
        Append(out, label[0].c_str(), u);
        Append(out, label[1].c_str(), s);
        Append(out, label[2].c_str(), v);
    }
    label += 3;
}

constexpr unsigned kCopiesValid = 1; // operator= takes over a valid object only
constexpr unsigned kWritesValid = 2; // so does ToRecord
constexpr unsigned kYieldsValid = 4; // and the getters
constexpr unsigned kDirect = 8;      // the fields are read without a record around them
constexpr unsigned kEntry = kCopiesValid | kWritesValid;

struct Row {
    const char* name;
    const char* label; // of the record around the fields
    unsigned rules;
    const char* missing; // whose line, with its level, says that there is no such record
    Lines fields;
    std::vector<std::string> labels; // theirs
    std::function<Outcome(const vorn::cRecord& input, const vorn::cRecord& sample)> run;
};

// fields: in front of each, * required, + present and empty when missing, - without a getter,
// ~ one of a triple. The getters follow in the order of the fields.
template <class C, typename... Getters>
Row Case(const char* name, const char* label, unsigned rules, const char* missing,
         const std::string& fields, Getters... getters)
{
    Row row{name, label, rules, missing, {}, {}, {}};
    std::istringstream in(fields);
    int depth = 0;
    for (std::string word; in >> word;) {
        if (depth == 0) {
            row.fields.emplace_back();
            const std::size_t from = word.find_first_not_of("*+-~");
            row.labels.push_back(word.substr(from, word.find('=') - from));
        }
        row.fields.back() += word + ' ';
        for (const char c : word)
            depth += c == '{' ? 1 : c == '}' ? -1 : 0;
    }
    row.run = [=, labels = row.labels](const vorn::cRecord& input, const vorn::cRecord& sample) {
        const C object(input);
        const C copy(object);
        C assigned(sample);
        assigned = object;
        const auto all = [&](const C& from) {
            vorn::cRecord out;
            const std::string* next = labels.data();
            (Gather(out, from, next, getters), ...);
            if (from.IsValid())
                Append(out, "valid", true);
            return out;
        };
        C moved(sample);
        moved = C(input);
        EXPECT_EQ(all(moved), all(assigned));
        Outcome o{all(object), all(copy), all(assigned), {}};
        object.ToRecord(o.written);
        return o;
    };
    return row;
}

#define TIME "={type=u1 value=u77} "
#define PATH "*parTreePath={path_Entry=U1 path_Entry=U2} "
#define TREE "parTree={parName=U9 procParVal={type=u1 value=u5}} "
#define OBJECT "={objName=U3 unit=u30 scaler=i-1 value=I5} "
#define VALUES "value_List={value_List_Entry={value_List_Entry={value=u1}}} "
#define USV(q) "~unit_" q "=u3 ~scaler_" q "=i-2 ~value_" q "=I1 "

// clang-format off
inline const std::vector<Row>& Rows()
{
    static const std::vector<Row> rows = {
        Case<cSmlListType>("cSmlListType", "smlList", kEntry, "",
            "*type=u1 *SmlTime" TIME,
            &cSmlListType::GetType, &cSmlListType::Get),
        Case<cSmlPeriodEntry>("cSmlPeriodEntry", "SmlPeriodEntry", kEntry, "[16]: cSmlValue",
            "*objName=U1 *unit=u30 *scaler=i-3 *value=b1 valueSignature=x00FF",
            &cSmlPeriodEntry::GetObjName, &cSmlPeriodEntry::GetUnit, &cSmlPeriodEntry::GetScaler,
            &cSmlPeriodEntry::GetValue, &cSmlPeriodEntry::GetValueSign),
        Case<cSmlHeaderEntry>("cSmlHeaderEntry", "pObjHdEntry", kEntry, "[16]: cSmlHeaderEntry",
            "*objName=U1 *unit=u30 *scaler=i-3",
            &cSmlHeaderEntry::GetObjName, &cSmlHeaderEntry::GetUnit, &cSmlHeaderEntry::GetScaler),
        Case<cSmlValueEntry>("cSmlValueEntry", "value_List_Entry", kEntry, "[16]: cSmlValueEntry",
            "*value=x4142 valueSignature=x01",
            &cSmlValueEntry::GetValue, &cSmlValueEntry::GetValueSign),
        Case<cSmlListEntry>("cSmlListEntry", "valListEntry", kEntry | kDirect, "[16]: cSmlValue",
            "*objName=U1 status=U2 valTime" TIME "unit=u30 scaler=i-3 "
            "*value={smlList={type=u1 SmlTime" TIME "}} valueSignature=x01",
            &cSmlListEntry::GetObjName, &cSmlListEntry::GetStatus, &cSmlListEntry::GetValTime,
            &cSmlListEntry::GetUnit, &cSmlListEntry::GetScaler, &cSmlListEntry::GetValue,
            &cSmlListEntry::GetValueSign),
        Case<cSmlTupelEntry>("cSmlTupelEntry", "SmlTupelEntry", kEntry | kYieldsValid,
            "[16]: cSmlTupelEntry",
            "*serverId=x01 *secIndex" TIME "*status=U7 " USV("pA") USV("R1") USV("R4")
            "*signature_pA_R1_R4=x0A " USV("mA") USV("R2") USV("R3") "*signature_mA_R2_R3=x0B",
            &cSmlTupelEntry::GetServerId, &cSmlTupelEntry::GetSecIndex, &cSmlTupelEntry::GetStatus,
            &cSmlTupelEntry::GetUSV_pA, &cSmlTupelEntry::GetUSV_R1, &cSmlTupelEntry::GetUSV_R4,
            &cSmlTupelEntry::GetSignature_pAR1R4, &cSmlTupelEntry::GetUSV_mA,
            &cSmlTupelEntry::GetUSV_R2, &cSmlTupelEntry::GetUSV_R3,
            &cSmlTupelEntry::GetSignature_mAR2R3),
        Case<cSmlProfObjPeriodEntry>("cSmlProfObjPeriodEntry", "pObjPerEntry", kCopiesValid,
            "[2]: cSmlProfObjPeriodEntry",
            "*valTime" TIME "*status=U7 *" VALUES "periodSignature=x0C",
            &cSmlProfObjPeriodEntry::GetValTime, &cSmlProfObjPeriodEntry::GetStatus,
            &cSmlProfObjPeriodEntry::GetValList, &cSmlProfObjPeriodEntry::GetPeriodSign),
        Case<cSmlTree>("cSmlTree", "parTree", kEntry, "",
            "*parName=U9 procParVal={type=u1 value=u5} child_List={" TREE "}",
            &cSmlTree::GetName, &cSmlTree::GetValue, &cSmlTree::GetChildList),
        Case<cSmlOpenReq>("cSmlOpenReq", "SmlOpenReq", 0, "[2]: cSmlOpenReq",
            "codepage=x01 *clientId=x02 *reqFileId=x03 +serverId=x04 username=x05 password=x06 "
            "-smlVersion=u1",
            &cSmlOpenReq::GetCodepage, &cSmlOpenReq::GetClientId, &cSmlOpenReq::GetReqFileId,
            &cSmlOpenReq::GetServerId, &cSmlOpenReq::GetUsername, &cSmlOpenReq::GetPassword),
        Case<cSmlOpenResp>("cSmlOpenResp", "SmlOpenRes", 0, "[2]: cSmlOpenRes",
            "codepage=x01 clientId=x02 *reqFileId=x03 *serverId=x04 refTime" TIME "-smlVersion=u1",
            &cSmlOpenResp::GetCodepage, &cSmlOpenResp::GetClientId, &cSmlOpenResp::GetReqFileId,
            &cSmlOpenResp::GetServerId, &cSmlOpenResp::GetRefTime),
        Case<cSmlGetProfileReq>("cSmlGetProfileReq", "SmlGetProfileReq", 0,
            "[2]: cSmlGetProfileReq",
            "+serverId=x01 username=x02 password=x03 withRawdata=b1 *beginTime" TIME "*endTime" TIME
            PATH "object_List={object_List_Entry=U8} " TREE,
            &cSmlGetProfileReq::GetServerId, &cSmlGetProfileReq::GetUsername,
            &cSmlGetProfileReq::GetPassword, &cSmlGetProfileReq::GetWithRaw,
            &cSmlGetProfileReq::GetBeginTime, &cSmlGetProfileReq::GetEndTime,
            &cSmlGetProfileReq::GetTreePath, &cSmlGetProfileReq::GetObjList,
            &cSmlGetProfileReq::GetDetails),
        Case<cSmlGetProfListRes>("cSmlGetProfListRes", "SmlGetProfListRes", 0,
            "[2]: cSmlGetProfListRes",
            "*serverId=x01 *actTime" TIME "*regPeriod=u900 " PATH "*valTime" TIME "*status=U7 "
            "*period_List={SmlPeriodEntry={SmlPeriodEntry" OBJECT "}} rawdata=x02 "
            "periodSignature=x03",
            &cSmlGetProfListRes::GetServerId, &cSmlGetProfListRes::GetActTime,
            &cSmlGetProfListRes::GetPeriod, &cSmlGetProfListRes::GetTreePath,
            &cSmlGetProfListRes::GetValTime, &cSmlGetProfListRes::GetStatus,
            &cSmlGetProfListRes::GetPerList, &cSmlGetProfListRes::GetRawData,
            &cSmlGetProfListRes::GetPerSign),
        Case<cSmlGetProfPackRes>("cSmlGetProfPackRes", "SmlGetProfPackRes", 0,
            "[2]: cSmlGetProfPackRes",
            "*serverId=x01 *actTime" TIME "*regPeriod=u900 " PATH
            "*header_List={pObjHdEntry={pObjHdEntry={objName=U3 unit=u30 scaler=i-1}}} "
            "*period_List={pObjPerEntry={pObjPerEntry={valTime" TIME "status=U1 " VALUES "}}} "
            "rawdata=x02 profileSignature=x03",
            &cSmlGetProfPackRes::GetServerId, &cSmlGetProfPackRes::GetActTime,
            &cSmlGetProfPackRes::GetPeriod, &cSmlGetProfPackRes::GetTreePath,
            &cSmlGetProfPackRes::GetHdList, &cSmlGetProfPackRes::GetObjPerList,
            &cSmlGetProfPackRes::GetRawData, &cSmlGetProfPackRes::GetProfSign),
        Case<cSmlGetProcParReq>("cSmlGetProcParReq", "SmlGetProcParReq", 0,
            "[2]: cSmlGetProcParReq",
            "+serverId=x01 username=x02 password=x03 " PATH "attribute=x04",
            &cSmlGetProcParReq::GetServerId, &cSmlGetProcParReq::GetUsername,
            &cSmlGetProcParReq::GetPassword, &cSmlGetProcParReq::GetTreePath,
            &cSmlGetProcParReq::GetAttribute),
        Case<cSmlGetProcParRes>("cSmlGetProcParRes", "SmlGetProcParRes", 0,
            "[2]: cSmlGetProcParRes",
            "*serverId=x01 " PATH "*" TREE,
            &cSmlGetProcParRes::GetServerId, &cSmlGetProcParRes::GetTreePath,
            &cSmlGetProcParRes::GetTree),
        Case<cSmlSetProcParReq>("cSmlSetProcParReq", "SmlSetProcParReq", 0,
            "[2]: cSmlSetProcParReq",
            "serverId=x01 username=x02 password=x03 " PATH "*" TREE,
            &cSmlSetProcParReq::GetServerId, &cSmlSetProcParReq::GetUsername,
            &cSmlSetProcParReq::GetPassword, &cSmlSetProcParReq::GetTreePath,
            &cSmlSetProcParReq::GetTree),
        Case<cSmlAttentionRes>("cSmlAttentionRes", "SmlAttentionRes", 0, "[2]: cSmlAttentionRes",
            "*serverId=x01 *attentionNo=U142 attentionMsg=x02 " TREE,
            &cSmlAttentionRes::GetServerId, &cSmlAttentionRes::GetAttNo,
            &cSmlAttentionRes::GetAttMsg, &cSmlAttentionRes::GetAttDetails),
        Case<cSmlGetListReq>("cSmlGetListReq", "SmlGetListReq", 0, "[2]: cSmlGetListReq",
            "*clientId=x01 +serverId=x02 username=x03 password=x04 listName=U5",
            &cSmlGetListReq::GetClientId, &cSmlGetListReq::GetServerId,
            &cSmlGetListReq::GetUsername, &cSmlGetListReq::GetPassword,
            &cSmlGetListReq::GetListName),
        Case<cSmlGetListRes>("cSmlGetListRes", "SmlGetListRes", 0, "[2]: cSmlGetListRes",
            "clientId=x01 *serverId=x02 listName=U5 actSensorTime" TIME
            "*valList={valListEntry" OBJECT "} listSignature=x03 actGatewayTime" TIME,
            &cSmlGetListRes::GetClientId, &cSmlGetListRes::GetServerId,
            &cSmlGetListRes::GetListName, &cSmlGetListRes::GetActSTime, &cSmlGetListRes::GetValList,
            &cSmlGetListRes::GetListSign, &cSmlGetListRes::GetActGTime),
        Case<cSmlMsgHeader>("cSmlMsgHeader", "SmlMsgHeader", 0, "[2]: cSmlMsgHeader",
            "*transactionId=x01 *groupNo=u2 *abortOnError=u3 *smlMsgIdentifier=u256 *openCid=x05 "
            "*openRfid=x06 *openSid=x07 *openTid=x08 *openGNo=u9 *openAOE=u10",
            &cSmlMsgHeader::GetTransactionId, &cSmlMsgHeader::GetGroupNo,
            &cSmlMsgHeader::GetAbortOnError, &cSmlMsgHeader::GetSmlMsgIdentifier,
            &cSmlMsgHeader::GetOpenClientId, &cSmlMsgHeader::GetOpenReqFileId,
            &cSmlMsgHeader::GetOpenServerId, &cSmlMsgHeader::GetOpenTId,
            &cSmlMsgHeader::GetOpenGrpNo, &cSmlMsgHeader::GetOpenAbort),
        Case<cSmlMsgStatus>("cSmlMsgStatus", "SmlStatus", 0, "",
            "*Error=i0 *Type=i1 *Cast=i-1 *MsgNoInFile=u4",
            &cSmlMsgStatus::GetMsgError, &cSmlMsgStatus::GetMsgType, &cSmlMsgStatus::GetMsgCast,
            &cSmlMsgStatus::GetMsgNo),
    };
    return rows;
}
// clang-format on

} // namespace test

#endif
