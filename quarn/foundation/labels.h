// The labels of records: the names under which messages, structures and their fields stand in a
// record, each constant called as the label it holds. Labels are case-sensitive. Which label stands
// where, and for what kind of parameter, is defined in schema.h.
//
//   record.AppendDataPar(quarn::label::serverId, id, size, 0);
#ifndef QUARN_FOUNDATION_LABELS_H
#define QUARN_FOUNDATION_LABELS_H

namespace quarn::label
{

// The envelope of a message record.
inline constexpr char SmlMsgHeader[] = "SmlMsgHeader";
inline constexpr char SmlCrc[] = "SmlCrc";
inline constexpr char SmlStatus[] = "SmlStatus";
inline constexpr char SmltFlags[] = "SmltFlags";
inline constexpr char SmlMsgRawData[] = "SmlMsgRawData";

// What the codec and the parser exchange.
inline constexpr char IfRec[] = "IfRec";
inline constexpr char RawData[] = "RawData";
inline constexpr char SmlRawData[] = "SmlRawData";

// Message header.
inline constexpr char transactionId[] = "transactionId";
inline constexpr char groupNo[] = "groupNo";
inline constexpr char abortOnError[] = "abortOnError";
inline constexpr char smlMsgIdentifier[] = "smlMsgIdentifier";
inline constexpr char openCid[] = "openCid";
inline constexpr char openRfid[] = "openRfid";
inline constexpr char openSid[] = "openSid";
inline constexpr char openTid[] = "openTid";
inline constexpr char openGNo[] = "openGNo";
inline constexpr char openAOE[] = "openAOE";

// Message status.
inline constexpr char Error[] = "Error";
inline constexpr char Type[] = "Type";
inline constexpr char Cast[] = "Cast";
inline constexpr char MsgNoInFile[] = "MsgNoInFile";

// Message bodies.
inline constexpr char SmlOpenReq[] = "SmlOpenReq";
inline constexpr char SmlOpenRes[] = "SmlOpenRes";
inline constexpr char SmlCloseReq[] = "SmlCloseReq";
inline constexpr char SmlCloseRes[] = "SmlCloseRes";
inline constexpr char SmlGetProfileReq[] = "SmlGetProfileReq";
inline constexpr char SmlGetProfPackRes[] = "SmlGetProfPackRes";
inline constexpr char SmlGetProfListRes[] = "SmlGetProfListRes";
inline constexpr char SmlGetProcParReq[] = "SmlGetProcParReq";
inline constexpr char SmlGetProcParRes[] = "SmlGetProcParRes";
inline constexpr char SmlSetProcParReq[] = "SmlSetProcParReq";
inline constexpr char SmlGetListReq[] = "SmlGetListReq";
inline constexpr char SmlGetListRes[] = "SmlGetListRes";
inline constexpr char SmlAttentionRes[] = "SmlAttentionRes";

// Fields of the bodies.
inline constexpr char codepage[] = "codepage";
inline constexpr char clientId[] = "clientId";
inline constexpr char reqFileId[] = "reqFileId";
inline constexpr char serverId[] = "serverId";
inline constexpr char username[] = "username";
inline constexpr char password[] = "password";
inline constexpr char smlVersion[] = "smlVersion";
inline constexpr char refTime[] = "refTime";
inline constexpr char globalSignature[] = "globalSignature";
inline constexpr char withRawdata[] = "withRawdata";
inline constexpr char beginTime[] = "beginTime";
inline constexpr char endTime[] = "endTime";
inline constexpr char actTime[] = "actTime";
inline constexpr char regPeriod[] = "regPeriod";
inline constexpr char valTime[] = "valTime";
inline constexpr char status[] = "status";
inline constexpr char rawdata[] = "rawdata";
inline constexpr char periodSignature[] = "periodSignature";
inline constexpr char profileSignature[] = "profileSignature";
inline constexpr char attribute[] = "attribute";
inline constexpr char extMsgPart[] = "extMsgPart";
inline constexpr char attentionNo[] = "attentionNo";
inline constexpr char attentionMsg[] = "attentionMsg";
inline constexpr char listName[] = "listName";
inline constexpr char actSensorTime[] = "actSensorTime";
inline constexpr char listSignature[] = "listSignature";
inline constexpr char actGatewayTime[] = "actGatewayTime";

// Lists and their elements.
inline constexpr char parTreePath[] = "parTreePath";
inline constexpr char path_Entry[] = "path_Entry";
inline constexpr char object_List[] = "object_List";
inline constexpr char object_List_Entry[] = "object_List_Entry";
inline constexpr char valList[] = "valList";
inline constexpr char valListEntry[] = "valListEntry";
inline constexpr char child_List[] = "child_List";
inline constexpr char period_List[] = "period_List";
inline constexpr char SmlPeriodEntry[] = "SmlPeriodEntry";
inline constexpr char header_List[] = "header_List";
inline constexpr char pObjHdEntry[] = "pObjHdEntry";
inline constexpr char value_List[] = "value_List";
inline constexpr char value_List_Entry[] = "value_List_Entry";
inline constexpr char pObjPerEntry[] = "pObjPerEntry";

// Times and list types.
inline constexpr char type[] = "type";
inline constexpr char value[] = "value";
inline constexpr char locOffset[] = "locOffset";
inline constexpr char seaOffset[] = "seaOffset";
inline constexpr char SmlTime[] = "SmlTime";
inline constexpr char smlList[] = "smlList";

// Entries.
inline constexpr char objName[] = "objName";
inline constexpr char unit[] = "unit";
inline constexpr char scaler[] = "scaler";
inline constexpr char valueSignature[] = "valueSignature";
inline constexpr char SmlTupelEntry[] = "SmlTupelEntry";
inline constexpr char secIndex[] = "secIndex";
inline constexpr char unit_pA[] = "unit_pA";
inline constexpr char scaler_pA[] = "scaler_pA";
inline constexpr char value_pA[] = "value_pA";
inline constexpr char unit_R1[] = "unit_R1";
inline constexpr char scaler_R1[] = "scaler_R1";
inline constexpr char value_R1[] = "value_R1";
inline constexpr char unit_R4[] = "unit_R4";
inline constexpr char scaler_R4[] = "scaler_R4";
inline constexpr char value_R4[] = "value_R4";
inline constexpr char signature_pA_R1_R4[] = "signature_pA_R1_R4";
inline constexpr char unit_mA[] = "unit_mA";
inline constexpr char scaler_mA[] = "scaler_mA";
inline constexpr char value_mA[] = "value_mA";
inline constexpr char unit_R2[] = "unit_R2";
inline constexpr char scaler_R2[] = "scaler_R2";
inline constexpr char value_R2[] = "value_R2";
inline constexpr char unit_R3[] = "unit_R3";
inline constexpr char scaler_R3[] = "scaler_R3";
inline constexpr char value_R3[] = "value_R3";
inline constexpr char signature_mA_R2_R3[] = "signature_mA_R2_R3";

// Trees.
inline constexpr char parTree[] = "parTree";
inline constexpr char parName[] = "parName";
inline constexpr char procParVal[] = "procParVal";
inline constexpr char extFlag[] = "extFlag";
inline constexpr char extLen[] = "extLen";

} // namespace quarn::label

namespace quarn::detail
{
namespace label = quarn::label;
}

#endif
