// The parser's result codes: what SmlParser returns, what stands in a message's "Error", and the
// codes of the parse functions, which appear in the trace line "Decoding-Error: rc=%d".
#ifndef QUARN_PARSER_CODES_H
#define QUARN_PARSER_CODES_H

#include "quarn/foundation/tl.h"

// Results of cSMLP::SmlParser.
enum eSMLP_RESULT : int {
    SMLP_FILE_COMPLETE = 1,   // a file was completed by its close message, and no input is left
    SMLP_OK = 0,              // all input consumed, or nothing to do; the parser waits for more
    SMLP_BAD_PARAMETER = -1,  // "SmltFlags" or "SmlRawData" missing or mistyped; nothing consumed
    SMLP_WRONG_ORDER = -2,    // a file must begin in a piece flagged BUF_FLAG_FIRST; input dropped
    SMLP_DECODING_ERROR = -3, // a message could not be parsed, or an open message failed its CRC;
                              // the file is abandoned and the rest of the input dropped
    SMLP_OUT_OF_MEMORY = -4,  // memory ran out; the file is abandoned and the rest of the input
                              // dropped. Records stored before remain
    SMLP_UNKNOWN_STATE = -5   // the instance is corrupt
};

// Values of "SmlStatus"."Error": what the host has to answer.
enum eSML_STATUS : int {
    SML_STATUS_OK = 0,
    SML_STATUS_IGNORE_FILE = -1,    // no answer; the record, if any, is for information only
    SML_STATUS_CRC_CLOSE = -5,      // CRC failure in a close request
    SML_STATUS_CRC = -6,            // CRC failure in any other message
    SML_STATUS_FE00 = -10,          // answer with an attention response of number ...FE00
    SML_STATUS_FE01 = -11,          // ...FE01
    SML_STATUS_FE09 = -19,          // ...FE09
    SML_STATUS_FE10 = -26,          // ...FE10
    SML_STATUS_NULL_POINTER = -258, // internal
    SML_STATUS_UNKNOWN_STATE = -259 // internal
};

namespace quarn::detail
{

// Codes of the parse functions. RC_DONE, RC_INPUT_EMPTY, RC_MESSAGE, RC_STORE_FULL and RC_CHUNK
// steer the parse; every other code is an error, which the error handler maps to a status.
enum eRC : int {
    RC_LEFT = -3,    // a field was left to its reader (within the engine only)
    RC_ENTERED = -2, // a nested structure was begun (between the engine and its readers only)
    RC_ABSENT = -1,  // an optional structure is not set (likewise)
    RC_DONE = 0,
    RC_INPUT_EMPTY = 1,
    RC_MESSAGE = 2, // whole message parsed
    RC_TL_TYPE = 3,
    RC_TL_INTEGER_LENGTH = 4,
    RC_TL_TOO_LONG = 5,
    RC_TL_ZERO = 6,
    RC_FIELD_TYPE = 7,
    RC_NOT_OPTIONAL = 10,
    RC_PROC_PAR_TYPE = 12,
    RC_PROC_PAR_COUNT = 13,
    RC_MSG_TYPE = 20,
    RC_MSG_COUNT = 21,
    RC_TIME_CHOICE_TYPE = 22,
    RC_TIME_CHOICE_VALUE = 23,
    RC_TIME_CHOICE_LENGTH = 24,
    RC_TIME_TYPE = 25,
    RC_TIME_LENGTH = 26,
    RC_BODY_TYPE = 27,
    RC_BODY_COUNT = 28,
    RC_TAG_TYPE = 29,
    RC_TAG_VALUE = 30,
    RC_TAG_LENGTH = 31,
    RC_VALUE_CHOICE_TYPE = 32,
    RC_VALUE_CHOICE_VALUE = 33,
    RC_VALUE_CHOICE_LENGTH = 34,
    RC_END_OF_MSG = 35,
    RC_VALUE_TYPE = 36,
    RC_SML_VERSION = 37,
    RC_TUPEL_STATUS_TYPE = 38,
    RC_TUPEL_STATUS_LENGTH = 39,
    RC_UNIT_TYPE = 40,
    RC_UNIT_LENGTH = 41,
    RC_VALUE_LIST_TYPE = 42,
    RC_VALUE_ENTRY_TYPE = 43,
    RC_VALUE_ENTRY_COUNT = 44,
    RC_PERIOD_LIST_TYPE = 45,
    RC_PERIOD_ENTRY_TYPE = 46,
    RC_PERIOD_ENTRY_COUNT = 47,
    RC_PER_OBJ_LIST_TYPE = 48,
    RC_PER_OBJ_ENTRY_TYPE = 49,
    RC_PER_OBJ_ENTRY_COUNT = 50,
    RC_HEADER_LIST_TYPE = 51,
    RC_HEADER_ENTRY_TYPE = 52,
    RC_HEADER_ENTRY_COUNT = 53,
    RC_HEADER_OBJ_NAME = 54,
    RC_OBJ_REQ_LIST_TYPE = 55,
    RC_OBJ_REQ_ENTRY_TYPE = 56,
    RC_TREE_LIST_TYPE = 57,
    RC_TREE_PATH_TYPE = 58,
    RC_TREE_TYPE = 59,
    RC_TREE_COUNT = 60,
    RC_SCALER_TYPE = 61, // also the unit of a list entry
    RC_SCALER_LENGTH = 62,
    RC_CODEPAGE = 63,
    RC_LIST_TYPE = 64,
    RC_LIST_ENTRY_TYPE = 65,
    RC_LIST_ENTRY_COUNT = 66,
    RC_LOCAL_TIME_TYPE = 67,
    RC_LOCAL_TIME_COUNT = 68,
    RC_LOC_OFFSET_TYPE = 69,
    RC_LOC_OFFSET_LENGTH = 70,
    RC_SEA_OFFSET_TYPE = 71,
    RC_SEA_OFFSET_LENGTH = 72,
    RC_LIST_TYPE_TYPE = 73,
    RC_LIST_TYPE_COUNT = 74,
    RC_LIST_TYPE_CHOICE_TYPE = 75,
    RC_LIST_TYPE_CHOICE_LENGTH = 76,
    RC_LIST_TYPE_CHOICE_VALUE = 77,
    RC_STRING_TYPE = 80,
    RC_TRANSACTION_ID_TYPE = 81,
    RC_GROUP_NO_TYPE = 82,
    RC_ABORT_ON_ERROR_TYPE = 83,
    RC_CRC_TYPE = 84,
    RC_CODEPAGE_TYPE = 85,
    RC_CLIENT_ID_TYPE = 86,
    RC_REQ_FILE_ID_TYPE = 87,
    RC_SERVER_ID_TYPE = 88,
    RC_USERNAME_TYPE = 89,
    RC_PASSWORD_TYPE = 90,
    RC_SML_VERSION_TYPE = 91,
    RC_SIGNATURE_TYPE = 92,
    RC_WITH_RAWDATA_TYPE = 93,
    RC_ATTRIBUTE_TYPE = 94,
    RC_STATUS_TYPE = 95,
    RC_LIST_NAME_TYPE = 96,
    RC_STRING_LENGTH = 110,
    RC_TRANSACTION_ID_LENGTH = 111,
    RC_GROUP_NO_LENGTH = 112,
    RC_ABORT_ON_ERROR_LENGTH = 113,
    RC_CODEPAGE_LENGTH = 114,
    RC_CLIENT_ID_LENGTH = 115,
    RC_REQ_FILE_ID_LENGTH = 116,
    RC_SERVER_ID_LENGTH = 117,
    RC_USERNAME_LENGTH = 118,
    RC_PASSWORD_LENGTH = 119,
    RC_STATUS_LENGTH = 120,
    RC_LIST_NAME_LENGTH = 121,
    RC_ABORT_ON_ERROR_VALUE = 130,
    RC_CRC = 140,
    RC_STORE_FULL = 200, // a packet is due: the message store is full
    RC_CHUNK = 201,      // a packet is due: a chunk of a long octet string is ready
    RC_TREE_LEVEL = 202,
    RC_MESSAGE_TOO_LONG = 203, // beyond the limit, or its packets repeat too much
    RC_UNKNOWN_STATE = 204,
    RC_NULL_POINTER = 230
};

// Type classes of a TL field, as uiTLF_Type holds them: the type bits of the wire. A field that is
// not set and an octet string have the same type bits, 0, and so each a class of its own.
enum eTLF : unsigned {
    TLF_ABSENT = kOptionAbsent,
    TLF_BOOLEAN = kTlBoolean,
    TLF_INTEGER = kTlInteger,
    TLF_UNSIGNED = kTlUnsigned,
    TLF_LIST = kTlList,
    TLF_OCTET_STRING = 0x80
};

} // namespace quarn::detail

#endif
