// The encode functions. A message is described by a table of its fields in the order in which SML
// wants them, and by how it is wrapped up; one engine reads the fields and writes the message.
#include "quarn/encoder/encode.h"

#include "quarn/encoder/body_fields.h"
#include "quarn/encoder/message.h"
#include "quarn/foundation/frame_flags.h"
#include "quarn/foundation/labels.h"
#include "quarn/foundation/limits.h"

#include <array>
#include <new>

namespace
{

using namespace quarn::detail;
using namespace quarn::detail::encoder;
namespace schema = quarn::schema;

constexpr unsigned kFirst = BUF_FLAG_SML | BUF_FLAG_FIRST;
constexpr unsigned kLast = BUF_FLAG_SML | BUF_FLAG_LAST;
constexpr unsigned kWithin = BUF_FLAG_SML;

constexpr std::size_t kMaxFields = 9;

struct Message {
    const char* pcProgress;
    unsigned uiTag;
    unsigned uiFlags;
    long lSize; // of the buffer: the longest message
    const char* pcName;
    FieldTable fields;
};

void EncodeFields(const Message& kind, const vorn::cRecord& bodyRec, const vorn::cRecord& headerRec,
                  vorn::cRecord& result)
{
    std::array<Object, kMaxFields> objects; // neither body nor message deletes them
    Sml_Message_Body body(kind.uiTag, kind.fields.uiCount);
    for (unsigned i = 0; i < kind.fields.uiCount; ++i) {
        const Field& field = kind.fields.pFirst[i];
        objects[i] = field.how.pRead(bodyRec, field);
        if (body.SetListElement(objects[i].get(), i) != SML_LIST_OK)
            throw std::bad_alloc(); // the body has no slots
    }
    Sml_OctetString transactionId;
    Sml_Unsigned8 groupNo;
    Sml_Unsigned8 abortOnError;
    ConvertMsgHeader(headerRec, transactionId, groupNo, abortOnError);
    Sml_Message message(&transactionId, &groupNo, &abortOnError, &body);
    if (message.Get_MessageBody() == nullptr)
        throw std::bad_alloc(); // the message has no slots
    EncodeMessage(message, result, kind.uiFlags, kind.lSize);
}

// The short way: straight from the records into a buffer, where all of them is plain and fits.
constexpr long kShortWay = SML_MAX_ENCODED_LIST;

bool WriteMessage(const Message& kind, const vorn::cRecord& bodyRec, const vorn::cRecord& headerRec,
                  vorn::cRecord& result)
{
    if (kind.lSize > kShortWay)
        return false;
    char storage[kShortWay];
    cBuffer buf(storage, kind.lSize, 0, 0);
    ToBin_as_ListCount(quarn::schema::kMessage.uiCount, &buf);
    if (!WriteFields(headerRec, kMsgHeader, buf))
        return false;
    ToBin_as_Choice32(kind.uiTag, &buf);
    ToBin_as_ListCount(static_cast<unsigned short>(kind.fields.uiCount), &buf);
    if (!WriteFields(bodyRec, kind.fields, buf) || buf.Free() < kRoomForTail)
        return false;
    PutTail(buf);
    SetResult(result, kind.uiFlags, buf);
    return true;
}

int Encode(const Message& kind, const vorn::cRecord& bodyRec, const vorn::cRecord& headerRec,
           vorn::cRecord& result) noexcept
{
    Trace(LibSmle, kProgress, kind.pcProgress);
    try {
        if (!WriteMessage(kind, bodyRec, headerRec, result))
            EncodeFields(kind, bodyRec, headerRec, result);
        return SML_ENCODE_OK;
    } catch (...) {
        Trace(LibSmle, kError, "Encode %s: out of memory", kind.pcName);
        return SML_ENCODE_NO_MEMORY;
    }
}

constexpr Conversion BodyConversionOf(const schema::Element& element)
{
    const schema::Structure* const structure = element.pStructure;
    return structure == &schema::kTreePath     ? kTreePath
           : structure == &schema::Tree::kNode ? kTree
           : structure == &schema::kObjectList ? kObjectList
           : structure == &schema::kPeriodList ? kPeriodList
           : structure == &schema::kList       ? kValueList
                                               : ConversionOf(element);
}

template <std::size_t N, std::size_t M>
constexpr auto Fields(const schema::Element (&elements)[N], const Missing (&missing)[M])
{
    return FieldsOf(elements, missing, M, BodyConversionOf);
}
template <std::size_t N>
constexpr auto Fields(const schema::Element (&elements)[N])
{
    return FieldsOf(elements, nullptr, 0, BodyConversionOf);
}

constexpr auto kOpenRequest =
    Fields(schema::aOpenReq, {
                                 {label::clientId, "OpenReq: ClientId is missing!", kDetail},
                                 {label::reqFileId, "OpenReq: ReqFileId is missing!", kDetail},
                             });

constexpr auto kOpenResponse =
    Fields(schema::aOpenRes, {
                                 {label::reqFileId, "OpenRes: ReqFileId is missing!"},
                                 {label::serverId, "OpenRes: serverId is missing!"},
                             });

constexpr auto kClose = Fields(schema::aClose);

constexpr auto kAttentionResponse = Fields(
    schema::aAttentionRes, {
                               {label::serverId, "AttentionRes: serverId missing", kDetail},
                               {label::attentionNo, "AttentionRes: attentionNo missing", kDetail},
                           });

constexpr auto kGetProcParRequest = Fields(schema::aGetProcParReq);

constexpr auto kGetProcParResponse =
    Fields(schema::aGetProcParRes, {
                                       {label::serverId, "GetProcPar.Res: serverId missing"},
                                       {label::parTree, "GetProcPar.Res: parTree missing"},
                                   });

constexpr auto kSetProcParRequest =
    Fields(schema::aSetProcParReq, {{label::parTree, "SetProcPar.Req: parTree missing"}});

constexpr auto kGetProfileRequest = Fields(
    schema::aGetProfileReq, {
                                {label::beginTime, "GetProfileReq: beginTime is missing/wrong"},
                                {label::endTime, "GetProfileReq: endTime is missing/wrong"},
                                {label::object_List, "GetProfileReq: object_List empty", kDetail},
                            });

constexpr auto kGetProfileListResponse =
    Fields(schema::aGetProfListRes,
           {
               {label::actTime, "GetProfileListResp: actTime is missing/wrong"},
               {label::valTime, "GetProfileListResp: valTime is missing/wrong"},
               {label::status, "GetProfileListResp: status is missing/wrong"},
               {label::period_List, "GetProfileListResp: periodList is missing/wrong"},
               {label::rawdata, nullptr, kError, label::RawData},
           });

constexpr auto kGetListRequest = Fields(schema::aGetListReq);

constexpr auto kGetListResponse =
    Fields(schema::aGetListRes, {
                                    {label::serverId, "GetListRes: ServerId is missing!"},
                                    {label::valList, "GetListRes: valList is missing/wrong"},
                                });

} // namespace

int Encode_Open_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec, vorn::cRecord& result)
{
    static constexpr Message kMessage = {"Encode OpenReq",         SML_OPEN_REQ,  kFirst,
                                         SML_MAX_ENCODED_ENVELOPE, "OpenRequest", kOpenRequest};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_Open_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec, vorn::cRecord& result)
{
    static constexpr Message kMessage = {"Encode OpenResp",        SML_OPEN_RES,   kFirst,
                                         SML_MAX_ENCODED_ENVELOPE, "OpenResponse", kOpenResponse};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_Close_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec, vorn::cRecord& result)
{
    static constexpr Message kMessage = {"Encode CloseReq",        SML_CLOSE_REQ,  kLast,
                                         SML_MAX_ENCODED_ENVELOPE, "CloseRequest", kClose};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_Close_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec, vorn::cRecord& result)
{
    static constexpr Message kMessage = {"Encode CloseResp",       SML_CLOSE_RES,   kLast,
                                         SML_MAX_ENCODED_ENVELOPE, "CloseResponse", kClose};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_Attention_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                              vorn::cRecord& result)
{
    static constexpr Message kMessage = {
        "Encode AttentionResp",   SML_ATTENTION_RES,   kWithin,
        SML_MAX_ENCODED_ENVELOPE, "AttentionResponse", kAttentionResponse};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_GetProcPar_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                              vorn::cRecord& result)
{
    static constexpr Message kMessage = {
        "Encode GetProcParReq",  SML_GET_PROC_PAR_REQ, kWithin,
        SML_MAX_ENCODED_REQUEST, "GetProcParRequest",  kGetProcParRequest};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_GetProcPar_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                               vorn::cRecord& result)
{
    static constexpr Message kMessage = {
        "Encode GetProcParResp", SML_GET_PROC_PAR_RES, kWithin,
        SML_MAX_ENCODED_TREE,    "GetProcParResponse", kGetProcParResponse};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_SetProcPar_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                              vorn::cRecord& result)
{
    static constexpr Message kMessage = {
        "Encode SetProcParReq", SML_SET_PROC_PAR_REQ, kWithin,
        SML_MAX_ENCODED_TREE,   "SetProcParRequest",  kSetProcParRequest};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_GetProfile_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                              vorn::cRecord& result, int iChoice)
{
    static constexpr Message kPack = {
        "Encode GetProfilePackReq", SML_GET_PROFILE_PACK_REQ, kWithin,
        SML_MAX_ENCODED_REQUEST,    "GetProfileRequest",      kGetProfileRequest};
    static constexpr Message kList = {
        "Encode GetProfileListReq", SML_GET_PROFILE_LIST_REQ, kWithin,
        SML_MAX_ENCODED_REQUEST,    "GetProfileRequest",      kGetProfileRequest};
    if (iChoice == SML_GET_PROFILE_PACK_REQ)
        return Encode(kPack, bodyRec, headerRec, result);
    if (iChoice == SML_GET_PROFILE_LIST_REQ)
        return Encode(kList, bodyRec, headerRec, result);
    Trace(LibSmle, kError, "Encode GetProfileReq: wrong parameter 'iChoice'");
    return SML_ENCODE_BAD_CHOICE;
}

int Encode_GetProfileList_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                   vorn::cRecord& result)
{
    static constexpr Message kMessage = {
        "Encode GetProfileListResp", SML_GET_PROFILE_LIST_RES, kWithin,
        SML_MAX_ENCODED_LIST,        "GetProfileListResponse", kGetProfileListResponse};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_GetList_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec, vorn::cRecord& result)
{
    static constexpr Message kMessage = {
        "Encode GetListReq",     SML_GET_LIST_REQ, kWithin,
        SML_MAX_ENCODED_REQUEST, "GetListRequest", kGetListRequest};
    return Encode(kMessage, bodyRec, headerRec, result);
}

int Encode_GetList_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec, vorn::cRecord& result)
{
    static constexpr Message kMessage = {"Encode GetListRes",  SML_GET_LIST_RES,  kWithin,
                                         SML_MAX_ENCODED_LIST, "GetListResponse", kGetListResponse};
    return Encode(kMessage, bodyRec, headerRec, result);
}
