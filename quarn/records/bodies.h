// The bodies of messages: one class for each SML message but the close messages.
//
//   const cSmlGetListRes response(record);   // record as the parser made it
//   cSmlList values;
//   if (response.IsValid() && response.GetValList(values)) ...
//
// A class takes the message record, which holds the body under the body's label; without that, it
// traces at level 2 and has no field. Required fields make it valid, OrEmpty fields are present and
// empty when they are missing. Getters work whether or not the object is valid; object.h documents
// them. ToRecord appends a body with the present fields, in the order of the schema, whether or not
// the object is valid. Copies equal their source.
#ifndef QUARN_RECORDS_BODIES_H
#define QUARN_RECORDS_BODIES_H

#include "quarn/records/tree.h"

namespace quarn::detail
{

using OpenReq = ObjectOf<CLASS_OPEN_REQ, schema::kOpenReq,
                         Required<label::clientId, label::reqFileId>, OrEmpty<label::serverId>>;
using OpenResp =
    ObjectOf<CLASS_OPEN_RESP, schema::kOpenRes, Required<label::reqFileId, label::serverId>>;
using GetProfileReq = ObjectOf<CLASS_GET_PROFILE_REQ, schema::kGetProfileReq,
                               Required<label::beginTime, label::endTime, label::parTreePath>,
                               OrEmpty<label::serverId>>;
using GetProfListRes =
    ObjectOf<CLASS_GET_PROF_LIST_RES, schema::kGetProfListRes,
             Required<label::serverId, label::actTime, label::regPeriod, label::parTreePath,
                      label::valTime, label::status, label::period_List>>;
using GetProfPackRes =
    ObjectOf<CLASS_GET_PROF_PACK_RES, schema::kGetProfPackRes,
             Required<label::serverId, label::actTime, label::regPeriod, label::parTreePath,
                      label::header_List, label::period_List>,
             IfRecord<label::header_List, label::period_List>,
             OrFrom<label::profileSignature, label::periodSignature>>;
using GetProcParReq = ObjectOf<CLASS_GET_PROC_PAR_REQ, schema::kGetProcParReq,
                               Required<label::parTreePath>, OrEmpty<label::serverId>>;
using GetProcParRes = ObjectOf<CLASS_GET_PROC_PAR_RES, schema::kGetProcParRes,
                               Required<label::serverId, label::parTreePath, label::parTree>>;
using SetProcParReq = ObjectOf<CLASS_SET_PROC_PAR_REQ, schema::kSetProcParReq,
                               Required<label::parTreePath, label::parTree>>;
using AttentionRes = ObjectOf<CLASS_ATTENTION_RES, schema::kAttentionRes,
                              Required<label::serverId, label::attentionNo>>;
using GetListReq = ObjectOf<CLASS_GET_LIST_REQ, schema::kGetListReq, Required<label::clientId>,
                            OrEmpty<label::serverId>>;
using GetListRes = ObjectOf<CLASS_GET_LIST_RES, schema::kGetListRes,
                            Required<label::serverId, label::valList>, IfRecord<label::valList>>;

} // namespace quarn::detail

// Open request: begins a file of requests.
class QUARN_API cSmlOpenReq : public quarn::detail::OpenReq
{
public:
    using Object::Object;

    bool GetCodepage(std::string& v) const noexcept { return Get<quarn::label::codepage>(v); }
    bool GetClientId(std::string& v) const noexcept { return Get<quarn::label::clientId>(v); }
    bool GetReqFileId(std::string& v) const noexcept { return Get<quarn::label::reqFileId>(v); }
    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetUsername(std::string& v) const noexcept { return Get<quarn::label::username>(v); }
    bool GetPassword(std::string& v) const noexcept { return Get<quarn::label::password>(v); }
};

// Open response: begins a file of responses.
class QUARN_API cSmlOpenResp : public quarn::detail::OpenResp
{
public:
    using Object::Object;

    bool GetCodepage(std::string& v) const noexcept { return Get<quarn::label::codepage>(v); }
    bool GetClientId(std::string& v) const noexcept { return Get<quarn::label::clientId>(v); }
    bool GetReqFileId(std::string& v) const noexcept { return Get<quarn::label::reqFileId>(v); }
    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetRefTime(cSmlTime& v) const noexcept { return Get<quarn::label::refTime>(v); }
};

// Profile request, for a list as for a pack.
class QUARN_API cSmlGetProfileReq : public quarn::detail::GetProfileReq
{
public:
    using Object::Object;

    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetUsername(std::string& v) const noexcept { return Get<quarn::label::username>(v); }
    bool GetPassword(std::string& v) const noexcept { return Get<quarn::label::password>(v); }
    bool GetWithRaw(bool& v) const noexcept { return Get<quarn::label::withRawdata>(v); }
    bool GetBeginTime(cSmlTime& v) const noexcept { return Get<quarn::label::beginTime>(v); }
    bool GetEndTime(cSmlTime& v) const noexcept { return Get<quarn::label::endTime>(v); }
    bool GetTreePath(cSmlTreePath& v) const noexcept { return Get<quarn::label::parTreePath>(v); }
    bool GetObjList(cSmlObjList& v) const noexcept { return Get<quarn::label::object_List>(v); }
    bool GetDetails(cSmlTree& v) const noexcept { return Get<quarn::label::parTree>(v); }
};

// Profile-list response: one period with the values of its objects.
class QUARN_API cSmlGetProfListRes : public quarn::detail::GetProfListRes
{
public:
    using Object::Object;

    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetActTime(cSmlTime& v) const noexcept { return Get<quarn::label::actTime>(v); }
    bool GetPeriod(unsigned int& v) const noexcept { return Get<quarn::label::regPeriod>(v); }
    bool GetTreePath(cSmlTreePath& v) const noexcept { return Get<quarn::label::parTreePath>(v); }
    bool GetValTime(cSmlTime& v) const noexcept { return Get<quarn::label::valTime>(v); }
    bool GetStatus(unsigned long long& v) const noexcept { return Get<quarn::label::status>(v); }
    bool GetPerList(cSmlPeriodList& v) const noexcept { return Get<quarn::label::period_List>(v); }
    bool GetRawData(std::string& v) const noexcept { return Get<quarn::label::rawdata>(v); }
    bool GetPerSign(std::string& v) const noexcept { return Get<quarn::label::periodSignature>(v); }
};

// Profile-pack response: the objects once, then their values period by period. Its signature is
// read from "periodSignature" too, and written as "profileSignature".
class QUARN_API cSmlGetProfPackRes : public quarn::detail::GetProfPackRes
{
public:
    using Object::Object;

    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetActTime(cSmlTime& v) const noexcept { return Get<quarn::label::actTime>(v); }
    bool GetPeriod(unsigned int& v) const noexcept { return Get<quarn::label::regPeriod>(v); }
    bool GetTreePath(cSmlTreePath& v) const noexcept { return Get<quarn::label::parTreePath>(v); }
    bool GetHdList(cSmlHeaderList& v) const noexcept { return Get<quarn::label::header_List>(v); }
    bool GetObjPerList(cSmlProfObjPeriodList& v) const noexcept
    {
        return Get<quarn::label::period_List>(v);
    }
    bool GetRawData(std::string& v) const noexcept { return Get<quarn::label::rawdata>(v); }
    bool GetProfSign(std::string& v) const noexcept
    {
        return Get<quarn::label::profileSignature>(v);
    }
};

// Process-parameter request.
class QUARN_API cSmlGetProcParReq : public quarn::detail::GetProcParReq
{
public:
    using Object::Object;

    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetUsername(std::string& v) const noexcept { return Get<quarn::label::username>(v); }
    bool GetPassword(std::string& v) const noexcept { return Get<quarn::label::password>(v); }
    bool GetTreePath(cSmlTreePath& v) const noexcept { return Get<quarn::label::parTreePath>(v); }
    bool GetAttribute(std::string& v) const noexcept { return Get<quarn::label::attribute>(v); }
};

// Process-parameter response: the tree asked for.
class QUARN_API cSmlGetProcParRes : public quarn::detail::GetProcParRes
{
public:
    using Object::Object;

    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetTreePath(cSmlTreePath& v) const noexcept { return Get<quarn::label::parTreePath>(v); }
    bool GetTree(cSmlTree& v) const noexcept { return Get<quarn::label::parTree>(v); }
};

// Set-process-parameter request: the tree to be set.
class QUARN_API cSmlSetProcParReq : public quarn::detail::SetProcParReq
{
public:
    using Object::Object;

    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetUsername(std::string& v) const noexcept { return Get<quarn::label::username>(v); }
    bool GetPassword(std::string& v) const noexcept { return Get<quarn::label::password>(v); }
    bool GetTreePath(cSmlTreePath& v) const noexcept { return Get<quarn::label::parTreePath>(v); }
    bool GetTree(cSmlTree& v) const noexcept { return Get<quarn::label::parTree>(v); }
};

// Attention response: an error, or a confirmation.
class QUARN_API cSmlAttentionRes : public quarn::detail::AttentionRes
{
public:
    using Object::Object;

    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetAttNo(unsigned long long& v) const noexcept
    {
        return Get<quarn::label::attentionNo>(v);
    }
    bool GetAttMsg(std::string& v) const noexcept { return Get<quarn::label::attentionMsg>(v); }
    bool GetAttDetails(cSmlTree& v) const noexcept { return Get<quarn::label::parTree>(v); }
};

// List request.
class QUARN_API cSmlGetListReq : public quarn::detail::GetListReq
{
public:
    using Object::Object;

    bool GetClientId(std::string& v) const noexcept { return Get<quarn::label::clientId>(v); }
    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetUsername(std::string& v) const noexcept { return Get<quarn::label::username>(v); }
    bool GetPassword(std::string& v) const noexcept { return Get<quarn::label::password>(v); }
    bool GetListName(unsigned long long& v) const noexcept
    {
        return Get<quarn::label::listName>(v);
    }
};

// List response: the current values of a meter.
class QUARN_API cSmlGetListRes : public quarn::detail::GetListRes
{
public:
    using Object::Object;
    using Object::operator=;

    bool GetClientId(std::string& v) const noexcept { return Get<quarn::label::clientId>(v); }
    bool GetServerId(std::string& v) const noexcept { return Get<quarn::label::serverId>(v); }
    bool GetListName(unsigned long long& v) const noexcept
    {
        return Get<quarn::label::listName>(v);
    }
    bool GetActSTime(cSmlTime& v) const noexcept { return Get<quarn::label::actSensorTime>(v); }
    bool GetValList(cSmlList& v) const noexcept { return Get<quarn::label::valList>(v); }
    bool GetListSign(std::string& v) const noexcept { return Get<quarn::label::listSignature>(v); }
    bool GetActGTime(cSmlTime& v) const noexcept { return Get<quarn::label::actGatewayTime>(v); }

    // Turns a profile-list response into a list response: its server, and of each period entry a
    // list entry with the status and the time of the period. A response that is not valid, or a
    // lack of memory, clears this object, with a trace at level 2.
    cSmlGetListRes& operator=(const cSmlGetProfListRes& source) noexcept;
};

#endif
