// The body of every message, put together by its constructor and by its setters from objects that
// each write another number: what goes to a wrong place shows.
#include "tests/encoder/encoder_support.h"

#include <deque>
#include <tuple>
#include <type_traits>

namespace
{

using namespace test;

// Objects of each type, to be taken one after the other.
class Parts
{
public:
    Parts()
    {
        for (char& c : acNumbers)
            octets.emplace_back(&c, 1, -1);
        path.SetTreePath(0x010203040506LL, 0);
    }
    template <typename T>
    T* Next()
    {
        if constexpr (std::is_same_v<T, Sml_OctetString>)
            return &octets[uiOctets++];
        else if constexpr (std::is_same_v<T, Sml_Time>)
            return &aTimes[uiTimes++];
        else
            return &std::get<T&>(others);
    }

private:
    char acNumbers[6] = {10, 11, 12, 13, 14, 15};
    std::deque<Sml_OctetString> octets;
    Sml_Time aTimes[2] = {{1, 1, 0, 0}, {1, 2, 0, 0}};
    std::size_t uiOctets = 0;
    std::size_t uiTimes = 0;
    Sml_Signature signature{"\x05", 1};
    Sml_Unsigned8 u8{8};
    Sml_Unsigned32 u32{32};
    Sml_Unsigned64 u64{64};
    Sml_Bool flag{true};
    Sml_TreePath path{1};
    Sml_ListOf list{0, false};
    Sml_OctetString name{"\x07", 1, -1};
    Sml_ProcParValue value;
    Sml_Tree tree{&name, &value, &list, false};
    std::tuple<Sml_Signature&, Sml_Unsigned8&, Sml_Unsigned32&, Sml_Unsigned64&, Sml_Bool&,
               Sml_TreePath&, Sml_ListOf&, Sml_Tree&>
        others{signature, u8, u32, u64, flag, path, list, tree};
};

// A body of that tag, with its setters in the order of its fields; kChoice: what the constructor
// takes in front of them.
template <int... kChoice, class Body, class... F>
void Check(unsigned tag, int (Body::*... set)(F*) noexcept)
{
    SCOPED_TRACE(tag);
    EXPECT_EQ(sizeof...(F), quarn::schema::FindMessage(tag)->body.uiCount);
    Parts parts;
    const std::tuple<F*...> fields{parts.Next<F>()...};
    Body constructed = std::apply([](F*... f) { return Body(kChoice..., f...); }, fields);
    Body filled{kChoice...};
    std::apply([&](F*... f) { EXPECT_EQ((0 | ... | (filled.*set)(f)), 0); }, fields);
    const std::string head = Written([&](cBuffer* buf) {
        ToBin_as_Choice32(tag, buf);
        ToBin_as_ListCount(sizeof...(F), buf);
    });
    const std::string expected =
        std::apply([&](F*... f) { return (head + ... + Written(*f)); }, fields);
    EXPECT_EQ(Written(constructed), expected);
    EXPECT_EQ(Written(filled), expected);
}

// clang-format off
TEST(Bodies, EveryFieldGoesToItsPlace)
{
    { using B = Sml_Open_Request; Check(SML_OPEN_REQ, &B::Set_Codepage, &B::Set_ClientID,
          &B::Set_ReqFileID, &B::Set_ServerID, &B::Set_UserName, &B::Set_Password,
          &B::Set_SmlVersion); }
    { using B = Sml_Open_Response; Check(SML_OPEN_RES, &B::Set_Codepage, &B::Set_ClientID,
          &B::Set_ReqFileID, &B::Set_ServerID, &B::Set_RefTime, &B::Set_SmlVersion); }
    { using B = Sml_Close_Request; Check(SML_CLOSE_REQ, &B::Set_Signature); }
    { using B = Sml_Close_Response; Check(SML_CLOSE_RES, &B::Set_Signature); }
    { using B = Sml_GetProfile_Req; Check<0>(SML_GET_PROFILE_PACK_REQ, &B::Set_ServerId,
          &B::Set_Username, &B::Set_Password, &B::Set_RawFlag, &B::Set_BeginTime, &B::Set_EndTime,
          &B::Set_TreePath, &B::Set_ReqObjects, &B::Set_Details); }
    { using B = Sml_GetProfile_Req; Check<SML_GET_PROFILE_LIST_REQ>(SML_GET_PROFILE_LIST_REQ,
          &B::Set_ServerId, &B::Set_Username, &B::Set_Password, &B::Set_RawFlag, &B::Set_BeginTime,
          &B::Set_EndTime, &B::Set_TreePath, &B::Set_ReqObjects, &B::Set_Details); }
    { using B = Sml_GetProfList_Resp; Check(SML_GET_PROFILE_LIST_RES, &B::Set_ServerId,
          &B::Set_ActTime, &B::Set_RegPeriod, &B::Set_TreePath, &B::Set_ValTime, &B::Set_Status,
          &B::Set_LstOfPeriodEntry, &B::Set_RawData, &B::Set_Signature); }
    { using B = Sml_GetProcPar_Req; Check(SML_GET_PROC_PAR_REQ, &B::Set_ServerId, &B::Set_User,
          &B::Set_Password, &B::Set_TreePath, &B::Set_Attribute); }
    { using B = Sml_GetProcPar_Resp; Check(SML_GET_PROC_PAR_RES, &B::Set_ServerId, &B::Set_TreePath,
          &B::Set_Tree); }
    { using B = Sml_SetProcPar_Req; Check(SML_SET_PROC_PAR_REQ, &B::Set_ServerId, &B::Set_User,
          &B::Set_Password, &B::Set_TreePath, &B::Set_Tree); }
    { using B = Sml_GetList_Req; Check(SML_GET_LIST_REQ, &B::Set_ClientId, &B::Set_ServerId,
          &B::Set_Username, &B::Set_Password, &B::Set_ListName); }
    { using B = Sml_GetList_Resp; Check(SML_GET_LIST_RES, &B::Set_ClientId, &B::Set_ServerId,
          &B::Set_ListName, &B::Set_ActSensorTime, &B::Set_ListOfValEntry, &B::Set_ListSignature,
          &B::Set_ActGatewayTime); }
    { using B = Sml_Attention_Response; Check(SML_ATTENTION_RES, &B::Set_ServerID, &B::Set_AttNo,
          &B::Set_AttMsg, &B::Set_AttDetails); }
}
// clang-format on

TEST(Bodies, AreListsOfFields)
{
    Sml_OctetString a("\x0A", 1, -1);
    Sml_GetProcPar_Resp body;
    EXPECT_EQ(body.GetChoice(), 0x0501U);
    EXPECT_EQ(body.Set_ServerId(&a), 0);
    EXPECT_EQ(body.GetListElement(0), &a);
    EXPECT_EQ(body.GetListElement(1), nullptr);
    EXPECT_EQ(body.AddListElement(&a), 0);
    EXPECT_EQ(body.GetSecListCount(), 4U);
    EXPECT_EQ(Written(body), "7263050174020A020A"); // empty slots write nothing
}

} // namespace
