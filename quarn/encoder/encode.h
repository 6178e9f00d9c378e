// The encode functions: each turns one message, given as records, into its SML bytes.
//
//   vorn::cRecord header, body, result;
//   header.AppendDataPar("transactionId", "1", 1, 0);
//   header.AppendUIntPar("groupNo", 0, 0);
//   header.AppendUIntPar("abortOnError", 0, 0);
//   body.AppendDataPar("serverId", id, sizeof id, 0);
//   int rc = Encode_GetList_Request(body, header, result);
//
// bodyRec holds the fields of the message's body record, each under its label; headerRec the
// message header, of which "transactionId" (data), "groupNo" and "abortOnError" (unsigned) are
// read. result is replaced by "SmltFlags" (unsigned: BUF_FLAG_SML, with BUF_FLAG_FIRST for an open
// and BUF_FLAG_LAST for a close message) and "SmlMsgRawData" (data: the message, CRC and end byte
// included). bodyRec and headerRec are not changed.
//
// A field that is missing, or of another kind than its layout says, is written as not set (01), and
// the message is produced all the same. So is a byte string of no bytes or of more than
// SML_VALUE_CHUNK; that is not traced. A receiver refuses a message without the fields that are
// needed. LibSmle traces the lack of these fields, and with level 8 a line for each message:
//
//   message                 needed                     traced at level 2         at level 16
//   (header)                all three                  all three
//   open request            clientId, reqFileId                                  those needed
//   open response           reqFileId, serverId        those needed
//   profile requests                                   beginTime, endTime,       object_List
//                                                      parTreePath
//   profile list response   serverId, status,          actTime, parTreePath,
//                           period_List                valTime, status,
//                                                      period_List
//   get-proc-par request                               parTreePath
//   get-proc-par response   serverId, parTree          those and parTreePath
//   set-proc-par request    parTree                    parTree, parTreePath
//   list request            clientId
//   list response           serverId, valList          those needed
//   attention response      serverId, attentionNo                                those needed
//   valListEntry            objName                    objName, value
//   SmlPeriodEntry          objName, unit, scaler      those and value
//   parTree                 parName                    parName
//   procParVal                                         type, value
//   its SmlTime             type                                                 type, value
//   smlList                 SmlTime, its type          type, SmlTime
//
// A receiver takes an abortOnError of 0, 1, 2 and 0xFF. Without parTreePath, a path of no names
// (70) is written.
//
// These are written as not set and traced at level 2: an object_List of no names; a value of a kind
// that SML does not have; an smlList that is none, or of another type than 1; in a procParVal a
// type other than 1, 2, 4 and 5, and for 2 a value that is no period entry. For 4 and 5 a value
// that is no record is traced at level 16. Left out and traced at level 2: a child_List of no
// trees, and the levels of a tree beyond SML_MAX_TREE_DEPTH.
//
// A list or period entry is written whole, in a list and in a tree, with a value that is not set
// where its value is missing or unusable. An element of "valList" or "period_List" that is no
// record holds nothing to write: it is left out of the list and its count, and traced at level 2.
//
// One thing leaves a gap, so that the message announces more elements than it carries and its
// receiver refuses it: an element of another kind in a tree path, an object list or a child list.
// It is traced at level 2. A path without it would lead elsewhere.
//
// Sizes: a message has at most SML_MAX_ENCODED_ENVELOPE bytes (open, close, attention), _REQUEST
// (requests that send no tree), _LIST (list and profile list responses) or _TREE (get-proc-par
// response, set-proc-par request), see foundation/limits.h. What does not fit is left out, field by
// field, which makes a message that its receiver refuses; only byte strings are traced, at level 2.
// SmlMessageIsWhole tells; longer lists are the host's to divide.
//
//   if (rc == SML_ENCODE_OK && SmlMessageIsWhole(result))
//       Send(result);
//
// Result: eSML_ENCODE. Throws nothing and keeps no state: different threads may encode at once.
#ifndef QUARN_ENCODER_ENCODE_H
#define QUARN_ENCODER_ENCODE_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/framework.h"
#include "quarn/foundation/schema.h"

enum eSML_ENCODE : int {
    SML_ENCODE_OK = 0,
    SML_ENCODE_BAD_CHOICE = -1, // Encode_GetProfile_Request: another iChoice; result is untouched
    SML_ENCODE_NO_MEMORY = -2   // memory ran out; result is untouched; traced at level 2
};

// Whether the message in result (of an encode function, or of SmlMessageToBin) carries every
// element that it announces, from its head to its end byte. false: it did not fit its buffer, or
// has the gap named above, and its receiver refuses it; or there is no message. Takes time linear
// in the size of the message. Throws nothing.
QUARN_API bool SmlMessageIsWhole(const vorn::cRecord& result);

QUARN_API int Encode_Open_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                  vorn::cRecord& result);
QUARN_API int Encode_Open_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                   vorn::cRecord& result);
QUARN_API int Encode_Close_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                   vorn::cRecord& result);
QUARN_API int Encode_Close_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                    vorn::cRecord& result);
QUARN_API int Encode_Attention_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                        vorn::cRecord& result);
QUARN_API int Encode_GetProcPar_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                        vorn::cRecord& result);
QUARN_API int Encode_GetProcPar_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                         vorn::cRecord& result);
QUARN_API int Encode_SetProcPar_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                        vorn::cRecord& result);

// iChoice: SML_GET_PROFILE_PACK_REQ or SML_GET_PROFILE_LIST_REQ; anything else is traced at level 2
// and gives SML_ENCODE_BAD_CHOICE.
QUARN_API int Encode_GetProfile_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                        vorn::cRecord& result, int iChoice);
// Reads the raw data under "RawData".
QUARN_API int Encode_GetProfileList_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                             vorn::cRecord& result);
QUARN_API int Encode_GetList_Request(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                     vorn::cRecord& result);
QUARN_API int Encode_GetList_Response(vorn::cRecord& bodyRec, vorn::cRecord& headerRec,
                                      vorn::cRecord& result);

#endif
