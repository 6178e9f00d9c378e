// What both framing state machines share with their users: the modes and the results of Process.
// What a frame looks like is drawn in quarn/foundation/frame_format.h.
#ifndef QUARN_TRANSPORT_MODE_H
#define QUARN_TRANSPORT_MODE_H

// Modes of the state machines and of the codecs. Any value other than SMLT_MODE_RAW counts as TP.
enum eSMLT_MODE : int {
    SMLT_MODE_RAW = 1, // bytes pass through untouched
    SMLT_MODE_TP = 2   // bytes are framed and unframed
};

// Results of SmlTpTx::Process and SmlTpRx::Process; each class tells which it returns and when.
enum eSMLTP_RESULT : int {
    SMLTP_INPUT_EMPTY = 1, // all input is used and no frame has ended: go on with the next input
    SMLTP_OUTPUT_FULL = 2, // go on with an emptied output buffer and the same input
    SMLTP_INPUT_LEFT = 4,  // a frame has ended and the input holds bytes behind it
    SMLTP_FINISHED = 5,    // a frame has ended and all input is used
    SMLTP_NO_FIRST = 9     // the input that would begin a frame is not flagged BUF_FLAG_FIRST
};

#endif
