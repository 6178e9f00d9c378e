// The bodies of messages: a choice of the message's tag and the list of its fields.
//
//   72, tag in its shortest form, list of fields
//
// Each message has a class whose constructor takes one object per field, in order, and a setter for
// each field, which returns SML_LIST_OK or SML_LIST_BAD_INDEX (the slots could not be allocated).
// A body never deletes its fields: whoever made them deletes them, after the body was written. A
// field that is not set wants an absent object; the slot of a null pointer writes nothing, and the
// body then announces one field more than it carries.
//
//   Sml_Signature absent;
//   Sml_Close_Request body(&absent);   // writes 72 63 02 00 71 01
#ifndef QUARN_ENCODER_MESSAGE_BODY_H
#define QUARN_ENCODER_MESSAGE_BODY_H

#include "quarn/encoder/structures.h"
#include "quarn/foundation/schema.h"

class QUARN_API Sml_Message_Body : public Sml_ListOf
{
public:
    Sml_Message_Body() noexcept; // no tag and no fields
    // n empty fields; none when memory runs out.
    Sml_Message_Body(unsigned int tag, unsigned int n) noexcept;
    ~Sml_Message_Body() override;

    void ToBin(cBuffer* buf) override;

    unsigned int GetChoice() const noexcept { return tag.GetValue(); }
    void SetChoice(unsigned int t) noexcept { tag.SetValue(t); }

    unsigned int GetSecListCount() const noexcept; // fields
    // SML_LIST_OK or SML_LIST_BAD_INDEX.
    int SetListElement(Sml_Type* e, unsigned int i) noexcept;
    Sml_Type* GetListElement(unsigned int i) const noexcept; // null: empty, or no such field
    // One more field. SML_LIST_OK or SML_LIST_NO_MEMORY.
    int AddListElement(Sml_Type* e) noexcept;

private:
    Sml_ListOf choiceList;
    Sml_Unsigned32 tag;
    Sml_ListOf elementList;
};

namespace quarn::detail
{

// The body of one message, declared by its tag and the types of its fields.
template <unsigned kTag, typename... Fields>
class BodyOf : public TypedSlots<Sml_Message_Body, Fields...>
{
public:
    BodyOf() noexcept : TypedSlots<Sml_Message_Body, Fields...>(kTag) {}
    explicit BodyOf(Fields*... fields) noexcept
        : TypedSlots<Sml_Message_Body, Fields...>(kTag, fields...)
    {
    }
};

} // namespace quarn::detail

class QUARN_API Sml_Open_Request
    : public quarn::detail::BodyOf<SML_OPEN_REQ, Sml_OctetString, Sml_OctetString, Sml_OctetString,
                                   Sml_OctetString, Sml_OctetString, Sml_OctetString, Sml_Unsigned8>
{
public:
    using BodyOf::BodyOf;
    ~Sml_Open_Request() override;

    int Set_Codepage(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_ClientID(Sml_OctetString* e) noexcept { return Set<1>(e); }
    int Set_ReqFileID(Sml_OctetString* e) noexcept { return Set<2>(e); }
    int Set_ServerID(Sml_OctetString* e) noexcept { return Set<3>(e); }
    int Set_UserName(Sml_OctetString* e) noexcept { return Set<4>(e); }
    int Set_Password(Sml_OctetString* e) noexcept { return Set<5>(e); }
    int Set_SmlVersion(Sml_Unsigned8* e) noexcept { return Set<6>(e); }
};

class QUARN_API Sml_Open_Response
    : public quarn::detail::BodyOf<SML_OPEN_RES, Sml_OctetString, Sml_OctetString, Sml_OctetString,
                                   Sml_OctetString, Sml_Time, Sml_Unsigned8>
{
public:
    using BodyOf::BodyOf;
    ~Sml_Open_Response() override;

    int Set_Codepage(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_ClientID(Sml_OctetString* e) noexcept { return Set<1>(e); }
    int Set_ReqFileID(Sml_OctetString* e) noexcept { return Set<2>(e); }
    int Set_ServerID(Sml_OctetString* e) noexcept { return Set<3>(e); }
    int Set_RefTime(Sml_Time* e) noexcept { return Set<4>(e); }
    int Set_SmlVersion(Sml_Unsigned8* e) noexcept { return Set<5>(e); }
};

class QUARN_API Sml_Close_Request : public quarn::detail::BodyOf<SML_CLOSE_REQ, Sml_Signature>
{
public:
    using BodyOf::BodyOf;
    ~Sml_Close_Request() override;

    int Set_Signature(Sml_Signature* e) noexcept { return Set<0>(e); }
};

class QUARN_API Sml_Close_Response : public quarn::detail::BodyOf<SML_CLOSE_RES, Sml_Signature>
{
public:
    using BodyOf::BodyOf;
    ~Sml_Close_Response() override;

    int Set_Signature(Sml_Signature* e) noexcept { return Set<0>(e); }
};

// iChoice is SML_GET_PROFILE_LIST_REQ for a profile list request; any other value makes a profile
// pack request.
class QUARN_API Sml_GetProfile_Req
    : public quarn::detail::TypedSlots<Sml_Message_Body, Sml_OctetString, Sml_OctetString,
                                       Sml_OctetString, Sml_Bool, Sml_Time, Sml_Time, Sml_TreePath,
                                       Sml_ListOf, Sml_Tree>
{
public:
    explicit Sml_GetProfile_Req(int iChoice = SML_GET_PROFILE_PACK_REQ) noexcept
        : TypedSlots(Tag(iChoice))
    {
    }
    Sml_GetProfile_Req(int iChoice, Sml_OctetString* serverId, Sml_OctetString* username,
                       Sml_OctetString* password, Sml_Bool* withRawdata, Sml_Time* beginTime,
                       Sml_Time* endTime, Sml_TreePath* path, Sml_ListOf* objects,
                       Sml_Tree* details) noexcept
        : TypedSlots(Tag(iChoice), serverId, username, password, withRawdata, beginTime, endTime,
                     path, objects, details)
    {
    }
    ~Sml_GetProfile_Req() override;

    int Set_ServerId(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_Username(Sml_OctetString* e) noexcept { return Set<1>(e); }
    int Set_Password(Sml_OctetString* e) noexcept { return Set<2>(e); }
    int Set_RawFlag(Sml_Bool* e) noexcept { return Set<3>(e); }
    int Set_BeginTime(Sml_Time* e) noexcept { return Set<4>(e); }
    int Set_EndTime(Sml_Time* e) noexcept { return Set<5>(e); }
    int Set_TreePath(Sml_TreePath* e) noexcept { return Set<6>(e); }
    int Set_ReqObjects(Sml_ListOf* e) noexcept { return Set<7>(e); }
    int Set_Details(Sml_Tree* e) noexcept { return Set<8>(e); }

private:
    static unsigned Tag(int iChoice) noexcept
    {
        return iChoice == SML_GET_PROFILE_LIST_REQ ? SML_GET_PROFILE_LIST_REQ
                                                   : SML_GET_PROFILE_PACK_REQ;
    }
};

class QUARN_API Sml_GetProfList_Resp
    : public quarn::detail::BodyOf<SML_GET_PROFILE_LIST_RES, Sml_OctetString, Sml_Time,
                                   Sml_Unsigned32, Sml_TreePath, Sml_Time, Sml_Unsigned64,
                                   Sml_ListOf, Sml_OctetString, Sml_Signature>
{
public:
    using BodyOf::BodyOf;
    ~Sml_GetProfList_Resp() override;

    int Set_ServerId(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_ActTime(Sml_Time* e) noexcept { return Set<1>(e); }
    int Set_RegPeriod(Sml_Unsigned32* e) noexcept { return Set<2>(e); }
    int Set_TreePath(Sml_TreePath* e) noexcept { return Set<3>(e); }
    int Set_ValTime(Sml_Time* e) noexcept { return Set<4>(e); }
    int Set_Status(Sml_Unsigned64* e) noexcept { return Set<5>(e); }
    int Set_LstOfPeriodEntry(Sml_ListOf* e) noexcept { return Set<6>(e); }
    int Set_RawData(Sml_OctetString* e) noexcept { return Set<7>(e); }
    int Set_Signature(Sml_Signature* e) noexcept { return Set<8>(e); }
};

class QUARN_API Sml_GetProcPar_Req
    : public quarn::detail::BodyOf<SML_GET_PROC_PAR_REQ, Sml_OctetString, Sml_OctetString,
                                   Sml_OctetString, Sml_TreePath, Sml_OctetString>
{
public:
    using BodyOf::BodyOf;
    ~Sml_GetProcPar_Req() override;

    int Set_ServerId(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_User(Sml_OctetString* e) noexcept { return Set<1>(e); }
    int Set_Password(Sml_OctetString* e) noexcept { return Set<2>(e); }
    int Set_TreePath(Sml_TreePath* e) noexcept { return Set<3>(e); }
    int Set_Attribute(Sml_OctetString* e) noexcept { return Set<4>(e); }
};

class QUARN_API Sml_GetProcPar_Resp
    : public quarn::detail::BodyOf<SML_GET_PROC_PAR_RES, Sml_OctetString, Sml_TreePath, Sml_Tree>
{
public:
    using BodyOf::BodyOf;
    ~Sml_GetProcPar_Resp() override;

    int Set_ServerId(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_TreePath(Sml_TreePath* e) noexcept { return Set<1>(e); }
    int Set_Tree(Sml_Tree* e) noexcept { return Set<2>(e); }
};

class QUARN_API Sml_SetProcPar_Req
    : public quarn::detail::BodyOf<SML_SET_PROC_PAR_REQ, Sml_OctetString, Sml_OctetString,
                                   Sml_OctetString, Sml_TreePath, Sml_Tree>
{
public:
    using BodyOf::BodyOf;
    ~Sml_SetProcPar_Req() override;

    int Set_ServerId(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_User(Sml_OctetString* e) noexcept { return Set<1>(e); }
    int Set_Password(Sml_OctetString* e) noexcept { return Set<2>(e); }
    int Set_TreePath(Sml_TreePath* e) noexcept { return Set<3>(e); }
    int Set_Tree(Sml_Tree* e) noexcept { return Set<4>(e); }
};

class QUARN_API Sml_GetList_Req
    : public quarn::detail::BodyOf<SML_GET_LIST_REQ, Sml_OctetString, Sml_OctetString,
                                   Sml_OctetString, Sml_OctetString, Sml_OctetString>
{
public:
    using BodyOf::BodyOf;
    ~Sml_GetList_Req() override;

    int Set_ClientId(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_ServerId(Sml_OctetString* e) noexcept { return Set<1>(e); }
    int Set_Username(Sml_OctetString* e) noexcept { return Set<2>(e); }
    int Set_Password(Sml_OctetString* e) noexcept { return Set<3>(e); }
    int Set_ListName(Sml_OctetString* e) noexcept { return Set<4>(e); }
};

class QUARN_API Sml_GetList_Resp
    : public quarn::detail::BodyOf<SML_GET_LIST_RES, Sml_OctetString, Sml_OctetString,
                                   Sml_OctetString, Sml_Time, Sml_ListOf, Sml_Signature, Sml_Time>
{
public:
    using BodyOf::BodyOf;
    ~Sml_GetList_Resp() override;

    int Set_ClientId(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_ServerId(Sml_OctetString* e) noexcept { return Set<1>(e); }
    int Set_ListName(Sml_OctetString* e) noexcept { return Set<2>(e); }
    int Set_ActSensorTime(Sml_Time* e) noexcept { return Set<3>(e); }
    int Set_ListOfValEntry(Sml_ListOf* e) noexcept { return Set<4>(e); }
    int Set_ListSignature(Sml_Signature* e) noexcept { return Set<5>(e); }
    int Set_ActGatewayTime(Sml_Time* e) noexcept { return Set<6>(e); }
};

class QUARN_API Sml_Attention_Response
    : public quarn::detail::BodyOf<SML_ATTENTION_RES, Sml_OctetString, Sml_OctetString,
                                   Sml_OctetString, Sml_Tree>
{
public:
    using BodyOf::BodyOf;
    ~Sml_Attention_Response() override;

    int Set_ServerID(Sml_OctetString* e) noexcept { return Set<0>(e); }
    int Set_AttNo(Sml_OctetString* e) noexcept { return Set<1>(e); }
    int Set_AttMsg(Sml_OctetString* e) noexcept { return Set<2>(e); }
    int Set_AttDetails(Sml_Tree* e) noexcept { return Set<3>(e); }
};

#endif
