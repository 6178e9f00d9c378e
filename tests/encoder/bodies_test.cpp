// The body of every message, put together by its constructor and by its setters from objects that
// each write another number: what goes to a wrong place shows.
#include "tests/encoder/encoder_support.h"

#include <type_traits>

namespace
{

using namespace test;

TEST(Bodies, EveryFieldGoesToItsPlace)
{
    Sml_OctetString a("\x0A", 1, -1);
    Sml_OctetString b("\x0B", 1, -1);
    Sml_OctetString c("\x0C", 1, -1);
    Sml_OctetString d("\x0D", 1, -1);
    Sml_OctetString e("\x0E", 1, -1);
    Sml_OctetString f("\x0F", 1, -1);
    Sml_Signature signature("\x05", 1);
    Sml_Unsigned8 u8(8);
    Sml_Unsigned32 u32(32);
    Sml_Unsigned64 u64(64);
    Sml_Bool flag(true);
    Sml_Time t1(1, 1, 0, 0);
    Sml_Time t2(1, 2, 0, 0);
    Sml_TreePath path(1);
    path.SetTreePath(0x010203040506LL, 0);
    Sml_ListOf list(0, false);
    Sml_OctetString name("\x07", 1, -1);
    Sml_ProcParValue value;
    Sml_ListOf none(0, false);
    Sml_Tree tree(&name, &value, &none, false);
    const auto check = [](const char* hex, auto&& constructed, auto set) {
        std::decay_t<decltype(constructed)> filled;
        set(filled);
        EXPECT_EQ(Written(constructed), Hexed(hex));
        EXPECT_EQ(Written(filled), Hexed(hex));
    };
    check("72 630100 77 020A 020B 020C 020D 020E 020F 6208",
          Sml_Open_Request(&a, &b, &c, &d, &e, &f, &u8), [&](auto& body) {
              body.Set_SmlVersion(&u8);
              body.Set_Password(&f);
              body.Set_UserName(&e);
              body.Set_ServerID(&d);
              body.Set_ReqFileID(&c);
              body.Set_ClientID(&b);
              body.Set_Codepage(&a);
          });
    check("72 630101 76 020A 020B 020C 020D 7262016201 6208",
          Sml_Open_Response(&a, &b, &c, &d, &t1, &u8), [&](auto& body) {
              body.Set_SmlVersion(&u8);
              body.Set_RefTime(&t1);
              body.Set_ServerID(&d);
              body.Set_ReqFileID(&c);
              body.Set_ClientID(&b);
              body.Set_Codepage(&a);
          });
    check("72 630200 71 0205", Sml_Close_Request(&signature),
          [&](auto& body) { body.Set_Signature(&signature); });
    check("72 630201 71 0205", Sml_Close_Response(&signature),
          [&](auto& body) { body.Set_Signature(&signature); });
    const auto profile = [&](auto& body) {
        body.Set_Details(&tree);
        body.Set_ReqObjects(&list);
        body.Set_TreePath(&path);
        body.Set_EndTime(&t2);
        body.Set_BeginTime(&t1);
        body.Set_RawFlag(&flag);
        body.Set_Password(&c);
        body.Set_Username(&b);
        body.Set_ServerId(&a);
    };
    const std::string fields =
        "79 020A 020B 020C 4201 7262016201 7262016202 71 07010203040506 70 73 0207 01 70";
    check(("72 630300" + fields).c_str(),
          Sml_GetProfile_Req(0, &a, &b, &c, &flag, &t1, &t2, &path, &list, &tree), profile);
    check(("72 630400" + fields).c_str(),
          Sml_GetProfile_Req(SML_GET_PROFILE_LIST_REQ, &a, &b, &c, &flag, &t1, &t2, &path, &list,
                             &tree),
          [&](auto& body) {
              body.SetChoice(SML_GET_PROFILE_LIST_REQ);
              profile(body);
          });
    check("72 630401 79 020A 7262016201 6220 71 07010203040506 7262016202 6240 70 020B 0205",
          Sml_GetProfList_Resp(&a, &t1, &u32, &path, &t2, &u64, &list, &b, &signature),
          [&](auto& body) {
              body.Set_Signature(&signature);
              body.Set_RawData(&b);
              body.Set_LstOfPeriodEntry(&list);
              body.Set_Status(&u64);
              body.Set_ValTime(&t2);
              body.Set_TreePath(&path);
              body.Set_RegPeriod(&u32);
              body.Set_ActTime(&t1);
              body.Set_ServerId(&a);
          });
    check("72 630500 75 020A 020B 020C 71 07010203040506 020D",
          Sml_GetProcPar_Req(&a, &b, &c, &path, &d), [&](auto& body) {
              body.Set_Attribute(&d);
              body.Set_TreePath(&path);
              body.Set_Password(&c);
              body.Set_User(&b);
              body.Set_ServerId(&a);
          });
    check("72 630501 73 020A 71 07010203040506 73 0207 01 70",
          Sml_GetProcPar_Resp(&a, &path, &tree), [&](auto& body) {
              body.Set_Tree(&tree);
              body.Set_TreePath(&path);
              body.Set_ServerId(&a);
          });
    check("72 630600 75 020A 020B 020C 71 07010203040506 73 0207 01 70",
          Sml_SetProcPar_Req(&a, &b, &c, &path, &tree), [&](auto& body) {
              body.Set_Tree(&tree);
              body.Set_TreePath(&path);
              body.Set_Password(&c);
              body.Set_User(&b);
              body.Set_ServerId(&a);
          });
    check("72 630700 75 020A 020B 020C 020D 020E", Sml_GetList_Req(&a, &b, &c, &d, &e),
          [&](auto& body) {
              body.Set_ListName(&e);
              body.Set_Password(&d);
              body.Set_Username(&c);
              body.Set_ServerId(&b);
              body.Set_ClientId(&a);
          });
    check("72 630701 77 020A 020B 020C 7262016201 70 0205 7262016202",
          Sml_GetList_Resp(&a, &b, &c, &t1, &list, &signature, &t2), [&](auto& body) {
              body.Set_ActGatewayTime(&t2);
              body.Set_ListSignature(&signature);
              body.Set_ListOfValEntry(&list);
              body.Set_ActSensorTime(&t1);
              body.Set_ListName(&c);
              body.Set_ServerId(&b);
              body.Set_ClientId(&a);
          });
    check("72 63FF01 74 020A 020B 020C 73 0207 01 70", Sml_Attention_Response(&a, &b, &c, &tree),
          [&](auto& body) {
              body.Set_AttDetails(&tree);
              body.Set_AttMsg(&c);
              body.Set_AttNo(&b);
              body.Set_ServerID(&a);
          });
}

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
