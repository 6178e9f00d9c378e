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
// the message is produced all the same; LibSmle traces at level 2 or 16 what the receiver will miss
// (a level of 8 adds a line for each message). So are byte strings of no bytes or of more than
// 1200. An element of "valList" or "period_List" that is no record, or has no usable "value", is
// left out of the list and its count, with its trace line. One thing makes a message that its
// receiver will refuse, since it then announces more elements than it carries: a tree path, an
// object list or a child list with elements of the wrong kind, or an entry without a usable "value"
// as the value of a tree.
//
// Sizes: a message is built in a buffer of 500 bytes (open, close, attention), 1000 (requests),
// 4000 (list and profile list responses) or 10000 (get-process-parameter response,
// set-process-parameter request). What does not fit is left out, field by field, which also makes a
// message that its receiver refuses. Lists longer than that are the host's to divide.
//
// Result: eSML_ENCODE. Throws nothing and keeps no state: different threads may encode at once.
#ifndef QUARN_ENCODER_ENCODE_H
#define QUARN_ENCODER_ENCODE_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/framework.h"
#include "quarn/foundation/messages.h"

enum eSML_ENCODE : int {
    SML_ENCODE_OK = 0,
    SML_ENCODE_BAD_CHOICE = -1, // Encode_GetProfile_Request: another iChoice; result is untouched
    SML_ENCODE_NO_MEMORY = -2   // memory ran out; result is untouched; traced at level 2
};

// Whether the message in result (of an encode function, or of SmlMessageToBin) carries every
// element that it announces, from its head to its end byte. false: it did not fit its buffer, or
// has one of the gaps named above, and its receiver refuses it; also when there is no message.
// Takes time linear in the size of the message, and no memory.
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
