// Every class of the wing as data: what makes it valid, what it yields, writes and traces.
#ifndef TESTS_RECORDS_CLASS_TABLE_H
#define TESTS_RECORDS_CLASS_TABLE_H

#include "case.h"

namespace test
{

// A time with its label, so that it is read and written like the other classes.
struct LabelledTime : cSmlTime {
    LabelledTime() = default;
    explicit LabelledTime(const vorn::cRecord& record) : cSmlTime(record, "t") {}
    bool ToRecord(vorn::cRecord& to) const { return cSmlTime::ToRecord(to, "t"); }
};

// The value of a tree's node yields what another one, made of its alternative, holds.
inline void Alternative(vorn::cRecord& out, const cSmlProcParValue& value)
{
    cSmlProcParValue made;
    int got = 0;
    const auto remake = [&](auto... alternatives) {
        ((value.GetParValue(alternatives) ? ++got, made = alternatives : made), ...);
    };
    remake(cSmlValue(), cSmlPeriodEntry(), cSmlTupelEntry(), cSmlTime(), cSmlListEntry());
    EXPECT_EQ(got, value.IsValid() ? 1 : 0);
    if (made.IsValid())
        out = Nested(Written(made), "procParVal");
    made = value;
    made = cSmlTime(); // not valid: clears
    EXPECT_FALSE(made.IsValid());
}

// The lists whose operations have names of their own, with the usual ones.
struct TreePath : cSmlTreePath {
    using cSmlTreePath::cSmlTreePath;
    bool SetListEntry(unsigned long long name) { return SetPathEntry(name); }
    bool GetListEntry(unsigned long long& name, int i) const { return GetPathEntry(name, i); }
    bool GetListCount(int& count) const { return GetPathCount(count); }
};
struct ChildList : cSmlChildList {
    using cSmlChildList::cSmlChildList;
    bool SetListEntry(const cSmlTree& tree) { return SetTreeEntry(tree); }
    bool GetListEntry(cSmlTree& tree, int i) const { return GetTreeEntry(tree, i); }
    bool GetListCount(int& count) const { return GetTreeCount(count); }
};

// A list yields what another one, made of its elements, holds. emptied: what a count of -1 becomes
// when the list is empty.
template <class C, int emptied>
void Elements(vorn::cRecord& out, const C& list)
{
    C rebuilt;
    typename C::Element element{};
    int count = 0, told = -1;
    for (; list.GetListEntry(element, count); ++count)
        EXPECT_TRUE(rebuilt.SetListEntry(element));
    EXPECT_FALSE(list.GetListEntry(element, -1));
    EXPECT_EQ(list.GetListCount(told), count > 0);
    EXPECT_EQ(told, count > 0 ? count : emptied);
    if (count > 0)
        Written(rebuilt).begin()->GetRecord(out);
}

// clang-format off

const std::string kMissing = "::CTOR: record invalid/empty!", kRefused = "::ToRecord: class invalid";

// missing: who says, at which level, that there is no record to read; or nobody.
template <class C, typename... Getters>
auto Of(const std::string& name, const char* label, unsigned rules, const std::string& missing, const std::string& fields, Getters... getters)
{
    const Texts texts{missing.empty() ? "" : missing + kMissing, "[2]: " + name + kRefused, "", ""};
    return Case<C, Getters...>(name, label, rules, texts, fields, getters...);
}

// emptyName: in the line on no element; fault: the line on a parameter that is none; element: the text of one, # for its number.
template <class C, int emptied = 0>
auto List(const std::string& name, const char* label, const std::string& emptyName, const std::string& fault, const std::string& element,
          unsigned rules = 0, const std::string& missing = "[16]: ", const std::string& refusedLevel = "[2]: ", const std::string& refused = "/no entries")
{
    std::string fields;
    for (const char number : {'1', '2', '3'}) {
        fields += element + ' ';
        std::replace(fields.begin(), fields.end(), '#', number);
    }
    const Texts texts{missing.empty() ? "" : missing + name + kMissing, refusedLevel + name + kRefused + refused,
                      "[2]: " + name + ": Record " + emptyName + " is empty", "[2]: " + name + ": " + fault};
    return Case<C, void (*)(vorn::cRecord&, const C&)>(name, label, rules | kWritesValid, texts, fields, &Elements<C, emptied>);
}


// All classes, as a tuple.
inline const auto& Classes()
{
    static const std::string time = "={type=u1 value=u77} ", path = "*parTreePath={path_Entry=U1 path_Entry=U2} ";
    static const std::string tree = "parTree={parName=U9 procParVal={type=u1 value=u5}} ";
    static const std::string object = "={objName=U3 unit=u30 scaler=i-1 value=I5} ", header = "={objName=U3 unit=u30 scaler=i-1} ";
    static const std::string user = "username=x02 password=x03 ";
    static const std::string values = "value_List={value_List_Entry={value_List_Entry={value=u1}}} ";
    const auto usv = [](const std::string& q) { return "~unit_" + q + "=u3 ~scaler_" + q + "=i-2 ~value_" + q + "=I1 "; };
    static const auto classes = std::make_tuple(
        Of<LabelledTime>("cSmlTime", "t", kEntry, "", "*type=u3 *value=u77 &locOffset=i-3 &seaOffset=i4", &LabelledTime::GetType, &LabelledTime::GetValue, &LabelledTime::GetOffsets),
        Of<cSmlListType>("cSmlListType", "smlList", kEntry, "", "*type=u1 *SmlTime" + time, &cSmlListType::GetType, &cSmlListType::Get),
        Of<cSmlValue>("cSmlValue", "", kEntry, "[16]: cSmlValue", "*value=u5", &cSmlValue::GetBool, &cSmlValue::GetString, &cSmlValue::GetUInt,
            &cSmlValue::GetUInt64, &cSmlValue::GetSInt, &cSmlValue::GetSInt64, &cSmlValue::GetListType),
        Of<cSmlPeriodEntry>("cSmlPeriodEntry", "SmlPeriodEntry", kEntry, "[16]: cSmlValue", "*objName=U1 *unit=u30 *scaler=i-3 *value=b1 valueSignature=x00FF",
            &cSmlPeriodEntry::GetObjName, &cSmlPeriodEntry::GetUnit, &cSmlPeriodEntry::GetScaler, &cSmlPeriodEntry::GetValue, &cSmlPeriodEntry::GetValueSign),
        Of<cSmlHeaderEntry>("cSmlHeaderEntry", "pObjHdEntry", kEntry, "[16]: cSmlHeaderEntry", "*objName=U1 *unit=u30 *scaler=i-3", &cSmlHeaderEntry::GetObjName,
            &cSmlHeaderEntry::GetUnit, &cSmlHeaderEntry::GetScaler),
        Of<cSmlValueEntry>("cSmlValueEntry", "value_List_Entry", kEntry, "[16]: cSmlValueEntry", "*value=x4142 valueSignature=x01", &cSmlValueEntry::GetValue,
            &cSmlValueEntry::GetValueSign),
        Of<cSmlListEntry>("cSmlListEntry", "valListEntry", kEntry | kDirect, "[16]: cSmlValue", "*objName=U1 status=U2 valTime" + time +
            "unit=u30 scaler=i-3 *value={smlList={type=u1 SmlTime" + time + "}} valueSignature=x01", &cSmlListEntry::GetObjName, &cSmlListEntry::GetStatus,
            &cSmlListEntry::GetValTime, &cSmlListEntry::GetUnit, &cSmlListEntry::GetScaler, &cSmlListEntry::GetValue, &cSmlListEntry::GetValueSign),
        Of<cSmlTupelEntry>("cSmlTupelEntry", "SmlTupelEntry", kEntry | kYieldsValid, "[16]: cSmlTupelEntry", "*serverId=x01 *secIndex" + time + "*status=U7 " +
            usv("pA") + usv("R1") + usv("R4") + "*signature_pA_R1_R4=x0A " + usv("mA") + usv("R2") + usv("R3") + "*signature_mA_R2_R3=x0B",
            &cSmlTupelEntry::GetServerId, &cSmlTupelEntry::GetSecIndex, &cSmlTupelEntry::GetStatus, &cSmlTupelEntry::GetUSV_pA, &cSmlTupelEntry::GetUSV_R1,
            &cSmlTupelEntry::GetUSV_R4, &cSmlTupelEntry::GetSignature_pAR1R4, &cSmlTupelEntry::GetUSV_mA, &cSmlTupelEntry::GetUSV_R2, &cSmlTupelEntry::GetUSV_R3,
            &cSmlTupelEntry::GetSignature_mAR2R3),
        Of<cSmlProfObjPeriodEntry>("cSmlProfObjPeriodEntry", "pObjPerEntry", kCopiesValid, "[2]: cSmlProfObjPeriodEntry", "*valTime" + time + "*status=U7 *" + values
            + "periodSignature=x0C", &cSmlProfObjPeriodEntry::GetValTime, &cSmlProfObjPeriodEntry::GetStatus, &cSmlProfObjPeriodEntry::GetValList,
            &cSmlProfObjPeriodEntry::GetPeriodSign),
        List<cSmlList>("cSmlList", "valList", "<valList>", "valListEntry invalid/empty/wrong type", "valListEntry={objName=U# unit=u30 scaler=i-1 value=u#}"),
        List<cSmlPeriodList>("cSmlPeriodList", "period_List", "<period_List>", "period_List_Entry invalid/empty/wrong type",
            "SmlPeriodEntry={SmlPeriodEntry={objName=U# unit=u30 scaler=i-1 value=u#}}", kStepsByLabel),
        List<cSmlValueList>("cSmlValueList", "value_List", "<valList>", "value_List_Entry invalid/empty/wrong type",
            "value_List_Entry={value_List_Entry={value=u#}}"),
        List<cSmlHeaderList>("cSmlHeaderList", "header_List", "<valList>", "valListEntry invalid/empty/wrong type",
            "pObjHdEntry={pObjHdEntry={objName=U# unit=u30 scaler=i0}}"),
        List<cSmlProfObjPeriodList>("cSmlProfObjPeriodList", "period_List", "period_List", "pObjPerEntry invalid/empty/wrong type",
            "pObjPerEntry={pObjPerEntry={valTime={type=u1 value=u#} status=U# value_List={value_List_Entry={value_List_Entry={value=u#}}}}}"),
        List<TreePath, -1>("cSmlTreePath", "parTreePath",
            "<parTreePath>", "path_Entry invalid/empty/wrong type", "path_Entry=U#", 0, "[16]: ", "[2]: ", ""),
        List<cSmlObjList>("cSmlObjList", "object_List", "<object_List>", "object_List_Entry invalid/empty/wrong type", "object_List_Entry=U#", 0, "", "[8]: ",
            "/empty"),
        List<ChildList, -1>("cSmlChildList", "child_List",
            "<child_List>", "tree_Entry invalid/empty", "parTree={parName=U# procParVal={type=u1 value=u#}}"),
        Of<cSmlProcParValue>("cSmlProcParValue", "procParVal", kWritesValid | kYieldsValid, "[16]: cSmlProcParValue", "*type=u1 *value=u5", &Alternative),
        Of<cSmlTree>("cSmlTree", "parTree", kEntry, "", "*parName=U9 procParVal={type=u1 value=u5} child_List={" + tree + "}", &cSmlTree::GetName,
            &cSmlTree::GetValue, &cSmlTree::GetChildList),
        Of<cSmlOpenReq>("cSmlOpenReq", "SmlOpenReq", 0, "[2]: cSmlOpenReq",
            "codepage=x01 *clientId=x02 *reqFileId=x03 +serverId=x04 username=x05 password=x06 -smlVersion=u1", &cSmlOpenReq::GetCodepage, &cSmlOpenReq::GetClientId,
            &cSmlOpenReq::GetReqFileId, &cSmlOpenReq::GetServerId, &cSmlOpenReq::GetUsername, &cSmlOpenReq::GetPassword),
        Of<cSmlOpenResp>("cSmlOpenResp", "SmlOpenRes", 0, "[2]: cSmlOpenRes", "codepage=x01 clientId=x02 *reqFileId=x03 *serverId=x04 refTime" + time +
            "-smlVersion=u1", &cSmlOpenResp::GetCodepage, &cSmlOpenResp::GetClientId, &cSmlOpenResp::GetReqFileId, &cSmlOpenResp::GetServerId,
            &cSmlOpenResp::GetRefTime),
        Of<cSmlGetProfileReq>("cSmlGetProfileReq", "SmlGetProfileReq", 0, "[2]: cSmlGetProfileReq", "+serverId=x01 " + user + "withRawdata=b1 *beginTime" + time +
            "*endTime" + time + path + "object_List={object_List_Entry=U8} " + tree, &cSmlGetProfileReq::GetServerId, &cSmlGetProfileReq::GetUsername,
            &cSmlGetProfileReq::GetPassword, &cSmlGetProfileReq::GetWithRaw, &cSmlGetProfileReq::GetBeginTime, &cSmlGetProfileReq::GetEndTime,
            &cSmlGetProfileReq::GetTreePath, &cSmlGetProfileReq::GetObjList, &cSmlGetProfileReq::GetDetails),
        Of<cSmlGetProfListRes>("cSmlGetProfListRes", "SmlGetProfListRes", 0, "[2]: cSmlGetProfListRes", "*serverId=x01 *actTime" + time + "*regPeriod=u900 " + path +
            "*valTime" + time + "*status=U7 " "*period_List={SmlPeriodEntry={SmlPeriodEntry" + object + "}} rawdata=x02 periodSignature=x03",
            &cSmlGetProfListRes::GetServerId, &cSmlGetProfListRes::GetActTime, &cSmlGetProfListRes::GetPeriod, &cSmlGetProfListRes::GetTreePath,
            &cSmlGetProfListRes::GetValTime, &cSmlGetProfListRes::GetStatus, &cSmlGetProfListRes::GetPerList, &cSmlGetProfListRes::GetRawData,
            &cSmlGetProfListRes::GetPerSign),
        Of<cSmlGetProfPackRes>("cSmlGetProfPackRes", "SmlGetProfPackRes", 0, "[2]: cSmlGetProfPackRes", "*serverId=x01 *actTime" + time + "*regPeriod=u900 " + path +
            "*header_List={pObjHdEntry={pObjHdEntry" + header + "}} " "*period_List={pObjPerEntry={pObjPerEntry={valTime" + time + "status=U1 " + values +
            "}}} rawdata=x02 profileSignature=x03", &cSmlGetProfPackRes::GetServerId, &cSmlGetProfPackRes::GetActTime, &cSmlGetProfPackRes::GetPeriod,
            &cSmlGetProfPackRes::GetTreePath, &cSmlGetProfPackRes::GetHdList, &cSmlGetProfPackRes::GetObjPerList, &cSmlGetProfPackRes::GetRawData,
            &cSmlGetProfPackRes::GetProfSign),
        Of<cSmlGetProcParReq>("cSmlGetProcParReq", "SmlGetProcParReq", 0, "[2]: cSmlGetProcParReq", "+serverId=x01 " + user + path + "attribute=x04",
            &cSmlGetProcParReq::GetServerId, &cSmlGetProcParReq::GetUsername, &cSmlGetProcParReq::GetPassword, &cSmlGetProcParReq::GetTreePath,
            &cSmlGetProcParReq::GetAttribute),
        Of<cSmlGetProcParRes>("cSmlGetProcParRes", "SmlGetProcParRes", 0, "[2]: cSmlGetProcParRes", "*serverId=x01 " + path + "*" + tree,
            &cSmlGetProcParRes::GetServerId, &cSmlGetProcParRes::GetTreePath, &cSmlGetProcParRes::GetTree),
        Of<cSmlSetProcParReq>("cSmlSetProcParReq", "SmlSetProcParReq", 0, "[2]: cSmlSetProcParReq", "serverId=x01 " + user + path + "*" + tree,
            &cSmlSetProcParReq::GetServerId, &cSmlSetProcParReq::GetUsername, &cSmlSetProcParReq::GetPassword, &cSmlSetProcParReq::GetTreePath,
            &cSmlSetProcParReq::GetTree),
        Of<cSmlAttentionRes>("cSmlAttentionRes", "SmlAttentionRes", 0, "[2]: cSmlAttentionRes", "*serverId=x01 *attentionNo=U142 attentionMsg=x02 " + tree,
            &cSmlAttentionRes::GetServerId, &cSmlAttentionRes::GetAttNo, &cSmlAttentionRes::GetAttMsg, &cSmlAttentionRes::GetAttDetails),
        Of<cSmlGetListReq>("cSmlGetListReq", "SmlGetListReq", 0, "[2]: cSmlGetListReq", "*clientId=x01 +serverId=x02 " + user + "listName=U5",
            &cSmlGetListReq::GetClientId, &cSmlGetListReq::GetServerId, &cSmlGetListReq::GetUsername, &cSmlGetListReq::GetPassword, &cSmlGetListReq::GetListName),
        Of<cSmlGetListRes>("cSmlGetListRes", "SmlGetListRes", 0, "[2]: cSmlGetListRes", "clientId=x01 *serverId=x02 listName=U5 actSensorTime" + time +
            "*valList={valListEntry" + object + "} listSignature=x03 actGatewayTime" + time, &cSmlGetListRes::GetClientId, &cSmlGetListRes::GetServerId,
            &cSmlGetListRes::GetListName, &cSmlGetListRes::GetActSTime, &cSmlGetListRes::GetValList, &cSmlGetListRes::GetListSign, &cSmlGetListRes::GetActGTime),
        Of<cSmlMsgHeader>("cSmlMsgHeader", "SmlMsgHeader", 0, "[2]: cSmlMsgHeader",
            "*transactionId=x01 *groupNo=u2 *abortOnError=u3 *smlMsgIdentifier=u256 *openCid=x05 *openRfid=x06 *openSid=x07 *openTid=x08 *openGNo=u9 *openAOE=u10",
            &cSmlMsgHeader::GetTransactionId, &cSmlMsgHeader::GetGroupNo, &cSmlMsgHeader::GetAbortOnError, &cSmlMsgHeader::GetSmlMsgIdentifier,
            &cSmlMsgHeader::GetOpenClientId, &cSmlMsgHeader::GetOpenReqFileId, &cSmlMsgHeader::GetOpenServerId, &cSmlMsgHeader::GetOpenTId,
            &cSmlMsgHeader::GetOpenGrpNo, &cSmlMsgHeader::GetOpenAbort),
        Of<cSmlMsgStatus>("cSmlMsgStatus", "SmlStatus", 0, "", "*Error=i0 *Type=i1 *Cast=i-1 *MsgNoInFile=u4", &cSmlMsgStatus::GetMsgError,
            &cSmlMsgStatus::GetMsgType, &cSmlMsgStatus::GetMsgCast, &cSmlMsgStatus::GetMsgNo));
    return classes;
}
// clang-format on

template <typename Visit>
void ForEachClass(Visit visit)
{
    std::apply([&](const auto&... c) { (visit(c), ...); }, Classes());
}

} // namespace test

#endif
