// The error handler: maps the code with which a message was refused to the status that tells the
// host how to answer.
#include "quarn/parser/engine.h"

using namespace quarn::detail;

namespace
{

struct Range {
    int iFirst;
    int iLast;
    int iStatus; // SML_STATUS_FE01_OR_IGNORE: FE01, but a file that begins so is ignored
};

constexpr int kFe01OrIgnore = 1;

// Codes in ascending order. What is in no range is an unknown code.
constexpr Range kRanges[] = {
    {RC_TL_TYPE, RC_FIELD_TYPE, kFe01OrIgnore},
    {RC_NOT_OPTIONAL, RC_NOT_OPTIONAL, SML_STATUS_FE10},
    {11, 11, SML_STATUS_FE09},
    {RC_PROC_PAR_TYPE, RC_PROC_PAR_COUNT, kFe01OrIgnore},
    {RC_MSG_TYPE, RC_TAG_TYPE, kFe01OrIgnore},
    {RC_TAG_VALUE, RC_TAG_VALUE, SML_STATUS_FE01},
    {RC_TAG_LENGTH, RC_VALUE_TYPE, kFe01OrIgnore},
    {RC_SML_VERSION, RC_SML_VERSION, SML_STATUS_FE00},
    {RC_TUPEL_STATUS_TYPE, RC_SCALER_LENGTH, kFe01OrIgnore},
    {RC_CODEPAGE, RC_CODEPAGE, SML_STATUS_FE00},
    {RC_STRING_TYPE, RC_CRC_TYPE, kFe01OrIgnore},
    {RC_CODEPAGE_TYPE, RC_SML_VERSION_TYPE, SML_STATUS_FE01},
    {RC_SIGNATURE_TYPE, RC_WITH_RAWDATA_TYPE, kFe01OrIgnore},
    {RC_ATTRIBUTE_TYPE, RC_ATTRIBUTE_TYPE, SML_STATUS_FE01},
    {RC_STATUS_TYPE, RC_LIST_NAME_TYPE, kFe01OrIgnore},
    {RC_STRING_LENGTH, RC_CODEPAGE_LENGTH, kFe01OrIgnore},
    {RC_CLIENT_ID_LENGTH, RC_CLIENT_ID_LENGTH, SML_STATUS_FE00},
    {RC_REQ_FILE_ID_LENGTH, RC_SERVER_ID_LENGTH, kFe01OrIgnore},
    {RC_STATUS_LENGTH, RC_LIST_NAME_LENGTH, kFe01OrIgnore},
    {RC_ABORT_ON_ERROR_VALUE, RC_ABORT_ON_ERROR_VALUE, SML_STATUS_FE01},
    {RC_UNKNOWN_STATE, RC_UNKNOWN_STATE, SML_STATUS_UNKNOWN_STATE},
    {RC_NULL_POINTER, RC_NULL_POINTER, SML_STATUS_NULL_POINTER},
};

struct Text {
    int iStatus;
    const char* pcText;
};

constexpr Text kTexts[] = {
    {SML_STATUS_IGNORE_FILE, "Ignore SML-File! smlp[%d]"},
    {SML_STATUS_FE00, "ErrorHandler: Force Attention.Resp FE00! smlp[%d]"},
    {SML_STATUS_FE01, "ErrorHandler: Force Attention.Resp FE01! smlp[%d]"},
    {SML_STATUS_FE09, "ErrorHandler: Force Attention.Resp FE09! smlp[%d]"},
    {SML_STATUS_FE10, "ErrorHandler: Force Attention.Resp FE10! smlp[%d]"},
    {SML_STATUS_NULL_POINTER, "ErrorHandler: Unexpected NULL-Pointer! smlp[%d]"},
    {SML_STATUS_UNKNOWN_STATE, "ErrorHandler: Unknown State in Parser-Function! smlp[%d]"},
};

} // namespace

int cSMLP::ErrorHandler(int code) noexcept
{
    if (code == RC_CRC)
        return CrcError();
    for (const Range& range : kRanges) {
        if (code < range.iFirst || code > range.iLast)
            continue;
        iError = range.iStatus;
        if (iError == kFe01OrIgnore)
            iError = uiMsgNo == 1 ? SML_STATUS_IGNORE_FILE : SML_STATUS_FE01;
        for (const Text& text : kTexts) {
            if (text.iStatus == iError)
                Say(kError, text.pcText);
        }
        return iError == SML_STATUS_FE10 || iError == SML_STATUS_FE09 ? -3 : -2;
    }
    iError = SML_STATUS_FE00;
    Say(kError, "ErrorHandler: Unknown ErrorCode!, smlp[%d]");
    return -2;
}

int cSMLP::CrcError() noexcept
{
    if (uiMsgNo == 1) {
        iError = SML_STATUS_IGNORE_FILE;
        Say(kError, "ErrorHandler: CRC-Failure in 1.Msg!, smlp[%d]");
        return -2;
    }
    if (uiMsgIdentifier == SML_CLOSE_REQ) {
        iError = SML_STATUS_CRC_CLOSE;
        Say(kError, "ErrorHandler: CRC-Failure in Close.Req!, smlp[%d]");
        return -2;
    }
    iError = SML_STATUS_CRC;
    Say(kError, "ErrorHandler: CRC-Failure in ***.Req !, smlp[%d]");
    return ucAbortOnError == 0 ? -3 : -2;
}
