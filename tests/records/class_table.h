// Every class of the wing as data: what makes it valid, what it yields, writes and traces.
#ifndef TESTS_RECORDS_CLASS_TABLE_H
#define TESTS_RECORDS_CLASS_TABLE_H

#include "case.h"

namespace test
{

namespace schema = quarn::schema;
using schema::Element;
using schema::Structure;

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

// An element as the classes write it; the number tells it from others. ofList: as an element of a
// list, where most entries stand in a record of their own.
inline std::string Sample(const Element& element, unsigned number, bool ofList = false)
{
    const Structure* const structure = element.pStructure;
    const std::string digits = std::to_string(number), name = std::string(element.label) + '=';
    if (element.eType == schema::eTYPE::VALUE)
        return name + 'I' + digits;
    if (structure == nullptr) {
        switch (schema::KindOf(element)) {
        case quarn::KIND_DATA:
            return name + 'x' + ToHex(std::string(1, static_cast<char>(number)));
        case quarn::KIND_BOOL:
            return name + "b1";
        case quarn::KIND_SINT:
            return name + "i-" + digits;
        default:
            return name + (schema::KindOf(element) == quarn::KIND_UINT ? 'u' : 'U') + digits;
        }
    }
    if (structure->eForm == schema::eFORM::CHOICE)
        return name + "{type=u1 " + Sample((*structure)[0], number) + '}';
    std::string text = name + '{';
    for (const Element& inner : *structure) {
        if (inner.pStructure != &schema::Tree::kChildren)
            text += Sample(inner, number, structure->IsList()) + ' ';
    }
    text += '}';
    const bool isBare = structure == &schema::kListEntry || structure == &schema::Tree::kNode;
    return ofList && !isBare ? name + '{' + text + '}' : text;
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

// The same of a structure's elements, each with its mark.
template <class C, typename... Getters>
auto Of(const std::string& name, const char* label, const Structure& structure, unsigned rules, const std::string& missing, const std::string& marks, Getters... getters)
{
    std::string fields;
    for (unsigned i = 0; i < structure.uiCount; ++i)
        fields += marks.at(i) + Sample(structure[i], i + 1) + ' ';
    return Of<C>(name, label, rules, missing, fields, getters...);
}

// The same of a message's body, or of what stands beside it.
template <class C, typename... Getters>
auto Body(const std::string& name, const char* label, const Structure& structure, const std::string& marks, Getters... getters)
{
    return Of<C>(name, label, structure, 0, "[2]: " + name, marks, getters...);
}

// emptyName: in the line on no element; fault: the line on a parameter that is none.
template <class C, int emptied = 0>
auto List(const std::string& name, const char* label, const Structure& structure, const std::string& emptyName, const std::string& fault,
          unsigned rules = 0, const std::string& missing = "[16]: ", const std::string& refusedLevel = "[2]: ", const std::string& refused = "/no entries")
{
    std::string fields;
    for (const unsigned number : {1U, 2U, 3U})
        fields += Sample(structure[0], number, true) + ' ';
    const Texts texts{missing.empty() ? "" : missing + name + kMissing, refusedLevel + name + kRefused + refused,
                      "[2]: " + name + ": Record " + emptyName + " is empty", "[2]: " + name + ": " + fault};
    return Case<C, void (*)(vorn::cRecord&, const C&)>(name, label, rules | kWritesValid, texts, fields, &Elements<C, emptied>);
}

// All classes, as a tuple.
inline const auto& Classes()
{
    static const std::string time = "={type=u1 value=u77} ";
    static const auto classes = std::make_tuple(
        Of<LabelledTime>("cSmlTime", "t", kEntry, "", "*type=u3 *value=u77 &locOffset=i-3 &seaOffset=i4", &LabelledTime::GetType, &LabelledTime::GetValue, &LabelledTime::GetOffsets),
        Of<cSmlListType>("cSmlListType", "smlList", kEntry, "", "*type=u1 *SmlTime" + time, &cSmlListType::GetType, &cSmlListType::Get),
        Of<cSmlValue>("cSmlValue", "", kEntry, "[16]: cSmlValue", "*value=u5", &cSmlValue::GetBool, &cSmlValue::GetString, &cSmlValue::GetUInt,
            &cSmlValue::GetUInt64, &cSmlValue::GetSInt, &cSmlValue::GetSInt64, &cSmlValue::GetListType),
        Of<cSmlPeriodEntry>("cSmlPeriodEntry", "SmlPeriodEntry", schema::kPeriodEntry, kEntry,
            "[16]: cSmlValue", "**** ", &cSmlPeriodEntry::GetObjName, &cSmlPeriodEntry::GetUnit,
            &cSmlPeriodEntry::GetScaler, &cSmlPeriodEntry::GetValue, &cSmlPeriodEntry::GetValueSign),
        Of<cSmlHeaderEntry>("cSmlHeaderEntry", "pObjHdEntry", schema::kHeaderEntry, kEntry,
            "[16]: cSmlHeaderEntry", "***", &cSmlHeaderEntry::GetObjName, &cSmlHeaderEntry::GetUnit,
            &cSmlHeaderEntry::GetScaler),
        Of<cSmlValueEntry>("cSmlValueEntry", "value_List_Entry", schema::kValueEntry, kEntry,
            "[16]: cSmlValueEntry", "* ", &cSmlValueEntry::GetValue, &cSmlValueEntry::GetValueSign),
        Of<cSmlListEntry>("cSmlListEntry", "valListEntry", schema::kListEntry, kEntry | kDirect,
            "[16]: cSmlValue", "*    * ", &cSmlListEntry::GetObjName, &cSmlListEntry::GetStatus,
            &cSmlListEntry::GetValTime, &cSmlListEntry::GetUnit, &cSmlListEntry::GetScaler,
            &cSmlListEntry::GetValue, &cSmlListEntry::GetValueSign),
        Of<cSmlTupelEntry>("cSmlTupelEntry", "SmlTupelEntry", schema::kTupelEntry,
            kEntry | kYieldsValid, "[16]: cSmlTupelEntry", "***~~~~~~~~~*~~~~~~~~~*",
            &cSmlTupelEntry::GetServerId, &cSmlTupelEntry::GetSecIndex, &cSmlTupelEntry::GetStatus,
            &cSmlTupelEntry::GetUSV_pA, &cSmlTupelEntry::GetUSV_R1, &cSmlTupelEntry::GetUSV_R4,
            &cSmlTupelEntry::GetSignature_pAR1R4, &cSmlTupelEntry::GetUSV_mA,
            &cSmlTupelEntry::GetUSV_R2, &cSmlTupelEntry::GetUSV_R3,
            &cSmlTupelEntry::GetSignature_mAR2R3),
        Of<cSmlProfObjPeriodEntry>("cSmlProfObjPeriodEntry", "pObjPerEntry", schema::kPackPeriod,
            kCopiesValid, "[2]: cSmlProfObjPeriodEntry", "*** ", &cSmlProfObjPeriodEntry::GetValTime,
            &cSmlProfObjPeriodEntry::GetStatus, &cSmlProfObjPeriodEntry::GetValList,
            &cSmlProfObjPeriodEntry::GetPeriodSign),
        List<cSmlList>("cSmlList", "valList", schema::kList, "<valList>",
            "valListEntry invalid/empty/wrong type"),
        List<cSmlPeriodList>("cSmlPeriodList", "period_List", schema::kPeriodList, "<period_List>",
            "period_List_Entry invalid/empty/wrong type", kStepsByLabel),
        List<cSmlValueList>("cSmlValueList", "value_List", schema::kValueList, "<valList>",
            "value_List_Entry invalid/empty/wrong type"),
        List<cSmlHeaderList>("cSmlHeaderList", "header_List", schema::kHeaderList, "<valList>",
            "valListEntry invalid/empty/wrong type"),
        List<cSmlProfObjPeriodList>("cSmlProfObjPeriodList", "period_List", schema::kPackPeriodList,
            "period_List", "pObjPerEntry invalid/empty/wrong type"),
        List<TreePath, -1>("cSmlTreePath", "parTreePath", schema::kTreePath, "<parTreePath>",
            "path_Entry invalid/empty/wrong type", 0, "[16]: ", "[2]: ", ""),
        List<cSmlObjList>("cSmlObjList", "object_List", schema::kObjectList, "<object_List>",
            "object_List_Entry invalid/empty/wrong type", 0, "", "[8]: ", "/empty"),
        List<ChildList, -1>("cSmlChildList", "child_List", schema::Tree::kChildren, "<child_List>",
            "tree_Entry invalid/empty"),
        Of<cSmlProcParValue>("cSmlProcParValue", "procParVal", kWritesValid | kYieldsValid, "[16]: cSmlProcParValue", "*type=u1 *value=u5", &Alternative),
        Of<cSmlTree>("cSmlTree", "parTree", schema::Tree::kNode, kEntry, "", "*  ",
            &cSmlTree::GetName, &cSmlTree::GetValue, &cSmlTree::GetChildList),
        Body<cSmlOpenReq>("cSmlOpenReq", "SmlOpenReq", schema::kOpenReq, " **+  -",
            &cSmlOpenReq::GetCodepage, &cSmlOpenReq::GetClientId, &cSmlOpenReq::GetReqFileId,
            &cSmlOpenReq::GetServerId, &cSmlOpenReq::GetUsername, &cSmlOpenReq::GetPassword),
        Of<cSmlOpenResp>("cSmlOpenResp", "SmlOpenRes", schema::kOpenRes, 0, "[2]: cSmlOpenRes",
            "  ** -", &cSmlOpenResp::GetCodepage, &cSmlOpenResp::GetClientId,
            &cSmlOpenResp::GetReqFileId, &cSmlOpenResp::GetServerId, &cSmlOpenResp::GetRefTime),
        Body<cSmlGetProfileReq>("cSmlGetProfileReq", "SmlGetProfileReq", schema::kGetProfileReq,
            "+   ***  ", &cSmlGetProfileReq::GetServerId, &cSmlGetProfileReq::GetUsername,
            &cSmlGetProfileReq::GetPassword, &cSmlGetProfileReq::GetWithRaw,
            &cSmlGetProfileReq::GetBeginTime, &cSmlGetProfileReq::GetEndTime,
            &cSmlGetProfileReq::GetTreePath, &cSmlGetProfileReq::GetObjList,
            &cSmlGetProfileReq::GetDetails),
        Body<cSmlGetProfListRes>("cSmlGetProfListRes", "SmlGetProfListRes", schema::kGetProfListRes,
            "*******  ", &cSmlGetProfListRes::GetServerId, &cSmlGetProfListRes::GetActTime,
            &cSmlGetProfListRes::GetPeriod, &cSmlGetProfListRes::GetTreePath,
            &cSmlGetProfListRes::GetValTime, &cSmlGetProfListRes::GetStatus,
            &cSmlGetProfListRes::GetPerList, &cSmlGetProfListRes::GetRawData,
            &cSmlGetProfListRes::GetPerSign),
        Body<cSmlGetProfPackRes>("cSmlGetProfPackRes", "SmlGetProfPackRes", schema::kGetProfPackRes,
            "******  ", &cSmlGetProfPackRes::GetServerId, &cSmlGetProfPackRes::GetActTime,
            &cSmlGetProfPackRes::GetPeriod, &cSmlGetProfPackRes::GetTreePath,
            &cSmlGetProfPackRes::GetHdList, &cSmlGetProfPackRes::GetObjPerList,
            &cSmlGetProfPackRes::GetRawData, &cSmlGetProfPackRes::GetProfSign),
        Body<cSmlGetProcParReq>("cSmlGetProcParReq", "SmlGetProcParReq", schema::kGetProcParReq,
            "+  * ", &cSmlGetProcParReq::GetServerId, &cSmlGetProcParReq::GetUsername,
            &cSmlGetProcParReq::GetPassword, &cSmlGetProcParReq::GetTreePath,
            &cSmlGetProcParReq::GetAttribute),
        Body<cSmlGetProcParRes>("cSmlGetProcParRes", "SmlGetProcParRes", schema::kGetProcParRes,
            "***", &cSmlGetProcParRes::GetServerId, &cSmlGetProcParRes::GetTreePath,
            &cSmlGetProcParRes::GetTree),
        Body<cSmlSetProcParReq>("cSmlSetProcParReq", "SmlSetProcParReq", schema::kSetProcParReq,
            "   **", &cSmlSetProcParReq::GetServerId, &cSmlSetProcParReq::GetUsername,
            &cSmlSetProcParReq::GetPassword, &cSmlSetProcParReq::GetTreePath,
            &cSmlSetProcParReq::GetTree),
        Body<cSmlAttentionRes>("cSmlAttentionRes", "SmlAttentionRes", schema::kAttentionRes, "**  ",
            &cSmlAttentionRes::GetServerId, &cSmlAttentionRes::GetAttNo,
            &cSmlAttentionRes::GetAttMsg, &cSmlAttentionRes::GetAttDetails),
        Body<cSmlGetListReq>("cSmlGetListReq", "SmlGetListReq", schema::kGetListReq, "*+   ",
            &cSmlGetListReq::GetClientId, &cSmlGetListReq::GetServerId, &cSmlGetListReq::GetUsername,
            &cSmlGetListReq::GetPassword, &cSmlGetListReq::GetListName),
        Body<cSmlGetListRes>("cSmlGetListRes", "SmlGetListRes", schema::kGetListRes, " *  *  ",
            &cSmlGetListRes::GetClientId, &cSmlGetListRes::GetServerId, &cSmlGetListRes::GetListName,
            &cSmlGetListRes::GetActSTime, &cSmlGetListRes::GetValList, &cSmlGetListRes::GetListSign,
            &cSmlGetListRes::GetActGTime),
        Body<cSmlMsgHeader>("cSmlMsgHeader", "SmlMsgHeader", schema::kMsgHeader, "**********",
            &cSmlMsgHeader::GetTransactionId, &cSmlMsgHeader::GetGroupNo,
            &cSmlMsgHeader::GetAbortOnError, &cSmlMsgHeader::GetSmlMsgIdentifier,
            &cSmlMsgHeader::GetOpenClientId, &cSmlMsgHeader::GetOpenReqFileId,
            &cSmlMsgHeader::GetOpenServerId, &cSmlMsgHeader::GetOpenTId,
            &cSmlMsgHeader::GetOpenGrpNo, &cSmlMsgHeader::GetOpenAbort),
        Of<cSmlMsgStatus>("cSmlMsgStatus", "SmlStatus", schema::kStatus, 0, "", "****",
            &cSmlMsgStatus::GetMsgError, &cSmlMsgStatus::GetMsgType, &cSmlMsgStatus::GetMsgCast,
            &cSmlMsgStatus::GetMsgNo));
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
