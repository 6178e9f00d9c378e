// The bodies of messages: one class for each SML message but the close messages.
//
//   const cSmlGetListRes response(record);   // record as the parser made it
//   cSmlList values;
//   if (response.IsValid() && response.GetValList(values)) ...
//
// A class takes the message record, which holds the body under the body's label; without that, it
// traces at level 2 and has no field. The list of fields in its declaration is the whole of it:
// Required fields make it valid, OrEmpty fields are present and empty when they are missing, and
// the field Codepage is what GetCodepage reads. Getters work whether or not the object is valid,
// and are told of in object.h. ToRecord appends a body with the present fields, in the order of the
// declaration, whether or not the object is valid. Copies equal their source.
#ifndef QUARN_RECORDS_BODIES_H
#define QUARN_RECORDS_BODIES_H

#include "quarn/records/tree.h"

namespace quarn::detail::field
{

QUARN_FIELD(Codepage, GetCodepage, std::string, codepage)
QUARN_FIELD(ClientId, GetClientId, std::string, clientId)
QUARN_FIELD(ReqFileId, GetReqFileId, std::string, reqFileId)
QUARN_FIELD(ServerId, GetServerId, std::string, serverId)
QUARN_FIELD(Username, GetUsername, std::string, username)
QUARN_FIELD(Password, GetPassword, std::string, password)
struct SmlVersion : Field<unsigned int, label::smlVersion> { // read and written, without a getter
};
QUARN_FIELD(RefTime, GetRefTime, cSmlTime, refTime)
QUARN_FIELD(WithRaw, GetWithRaw, bool, withRawdata)
QUARN_FIELD(BeginTime, GetBeginTime, cSmlTime, beginTime)
QUARN_FIELD(EndTime, GetEndTime, cSmlTime, endTime)
QUARN_FIELD(ActTime, GetActTime, cSmlTime, actTime)
QUARN_FIELD(TreePath, GetTreePath, cSmlTreePath, parTreePath)
QUARN_FIELD(ObjList, GetObjList, cSmlObjList, object_List)
QUARN_FIELD(Tree, GetTree, cSmlTree, parTree)
QUARN_FIELD(Details, GetDetails, cSmlTree, parTree)
QUARN_FIELD(Period, GetPeriod, unsigned int, regPeriod)
QUARN_FIELD(PerList, GetPerList, cSmlPeriodList, period_List)
QUARN_FIELD(HdList, GetHdList, cSmlHeaderList, header_List)
QUARN_FIELD(ObjPerList, GetObjPerList, cSmlProfObjPeriodList, period_List)
QUARN_FIELD(RawData, GetRawData, std::string, rawdata)
QUARN_FIELD(PerSign, GetPerSign, std::string, periodSignature)
QUARN_FIELD(ProfSign, GetProfSign, std::string, profileSignature)
QUARN_FIELD(Attribute, GetAttribute, std::string, attribute)
QUARN_FIELD(AttNo, GetAttNo, unsigned long long, attentionNo)
QUARN_FIELD(AttMsg, GetAttMsg, std::string, attentionMsg)
QUARN_FIELD(AttDetails, GetAttDetails, cSmlTree, parTree)
QUARN_FIELD(ListName, GetListName, unsigned long long, listName)
QUARN_FIELD(ActSTime, GetActSTime, cSmlTime, actSensorTime)
QUARN_FIELD(ValList, GetValList, cSmlList, valList)
QUARN_FIELD(ListSign, GetListSign, std::string, listSignature)
QUARN_FIELD(ActGTime, GetActGTime, cSmlTime, actGatewayTime)

using GetListRes = Structure<CLASS_GET_LIST_RES, ClientId, Required<ServerId>, ListName, ActSTime,
                             Required<IfRecord<ValList>>, ListSign, ActGTime>;

} // namespace quarn::detail::field

// Open request: begins a file of requests.
QUARN_CLASS(cSmlOpenReq, Structure<CLASS_OPEN_REQ, field::Codepage, Required<field::ClientId>,
                                   Required<field::ReqFileId>, OrEmpty<field::ServerId>,
                                   field::Username, field::Password, field::SmlVersion>)

// Open response: begins a file of responses.
QUARN_CLASS(cSmlOpenResp,
            Structure<CLASS_OPEN_RESP, field::Codepage, field::ClientId, Required<field::ReqFileId>,
                      Required<field::ServerId>, field::RefTime, field::SmlVersion>)

// Profile request, for a list as for a pack.
QUARN_CLASS(
    cSmlGetProfileReq,
    Structure<CLASS_GET_PROFILE_REQ, OrEmpty<field::ServerId>, field::Username, field::Password,
              field::WithRaw, Required<field::BeginTime>, Required<field::EndTime>,
              Required<field::TreePath>, field::ObjList, field::Details>)

// Profile-list response: one period with the values of its objects.
QUARN_CLASS(
    cSmlGetProfListRes,
    Structure<CLASS_GET_PROF_LIST_RES, Required<field::ServerId>, Required<field::ActTime>,
              Required<field::Period>, Required<field::TreePath>, Required<field::ValTime>,
              Required<field::Status>, Required<field::PerList>, field::RawData, field::PerSign>)

// Profile-pack response: the objects once, then their values period by period. Its signature is
// read from "periodSignature" too, and written as "profileSignature".
QUARN_CLASS(cSmlGetProfPackRes,
            Structure<CLASS_GET_PROF_PACK_RES, Required<field::ServerId>, Required<field::ActTime>,
                      Required<field::Period>, Required<field::TreePath>,
                      Required<IfRecord<field::HdList>>, Required<IfRecord<field::ObjPerList>>,
                      field::RawData, OrFrom<field::ProfSign, label::periodSignature>>)

// Process-parameter request.
QUARN_CLASS(cSmlGetProcParReq,
            Structure<CLASS_GET_PROC_PAR_REQ, OrEmpty<field::ServerId>, field::Username,
                      field::Password, Required<field::TreePath>, field::Attribute>)

// Process-parameter response: the tree asked for.
QUARN_CLASS(cSmlGetProcParRes, Structure<CLASS_GET_PROC_PAR_RES, Required<field::ServerId>,
                                         Required<field::TreePath>, Required<field::Tree>>)

// Set-process-parameter request: the tree to be set.
QUARN_CLASS(cSmlSetProcParReq,
            Structure<CLASS_SET_PROC_PAR_REQ, field::ServerId, field::Username, field::Password,
                      Required<field::TreePath>, Required<field::Tree>>)

// Attention response: an error, or a confirmation.
QUARN_CLASS(cSmlAttentionRes, Structure<CLASS_ATTENTION_RES, Required<field::ServerId>,
                                        Required<field::AttNo>, field::AttMsg, field::AttDetails>)

// List request.
QUARN_CLASS(cSmlGetListReq,
            Structure<CLASS_GET_LIST_REQ, Required<field::ClientId>, OrEmpty<field::ServerId>,
                      field::Username, field::Password, field::ListName>)

// List response: the current values of a meter.
class QUARN_API cSmlGetListRes : public quarn::detail::field::GetListRes
{
public:
    using Object::Object;
    using Object::operator=;

    // Turns a profile-list response into a list response: its server, and of each period entry a
    // list entry with the status and the time of the period. A response that is not valid, or a
    // lack of memory, clears this object, with a trace at level 2.
    cSmlGetListRes& operator=(const cSmlGetProfListRes& source) noexcept;
};

#endif
