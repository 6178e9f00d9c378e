// What stands beside the body in a message record: the message's header and the parser's status.
// Both classes work like those of bodies.h. A record without a header is traced at level 2; one
// without a status is not traced.
#ifndef QUARN_RECORDS_ENVELOPE_H
#define QUARN_RECORDS_ENVELOPE_H

#include "quarn/records/bodies.h"

namespace quarn::detail::field
{

QUARN_FIELD(TransactionId, GetTransactionId, std::string, transactionId)
QUARN_FIELD(GroupNo, GetGroupNo, unsigned int, groupNo)
QUARN_FIELD(AbortOnError, GetAbortOnError, unsigned int, abortOnError)
QUARN_FIELD(SmlMsgIdentifier, GetSmlMsgIdentifier, unsigned int, smlMsgIdentifier)
QUARN_FIELD(OpenClientId, GetOpenClientId, std::string, openCid)
QUARN_FIELD(OpenReqFileId, GetOpenReqFileId, std::string, openRfid)
QUARN_FIELD(OpenServerId, GetOpenServerId, std::string, openSid)
QUARN_FIELD(OpenTId, GetOpenTId, std::string, openTid)
QUARN_FIELD(OpenGrpNo, GetOpenGrpNo, unsigned int, openGNo)
QUARN_FIELD(OpenAbort, GetOpenAbort, unsigned int, openAOE)
QUARN_FIELD(MsgError, GetMsgError, int, Error)
QUARN_FIELD(MsgType, GetMsgType, int, Type)
QUARN_FIELD(MsgCast, GetMsgCast, int, Cast)
QUARN_FIELD(MsgNo, GetMsgNo, unsigned int, MsgNoInFile)

// With an operation for hosts that ask for it: the object is valid as soon as all fields are
// present, so there is nothing left to do.
template <class F>
struct Tested : F {
    void TestClass_SetValid() noexcept {}
};

} // namespace quarn::detail::field

// The header: the message's own four fields, then what the open message of its file said.
QUARN_CLASS(cSmlMsgHeader,
            Structure<CLASS_MSG_HEADER, Required<field::TransactionId>, Required<field::GroupNo>,
                      Required<field::AbortOnError>, Required<field::SmlMsgIdentifier>,
                      Required<field::OpenClientId>, Required<field::OpenReqFileId>,
                      Required<field::OpenServerId>, Required<field::OpenTId>,
                      Required<field::OpenGrpNo>, Required<field::Tested<field::OpenAbort>>>)

// The status. Error: 0, or why the message was refused. Type: 0 request, 1 response. Cast: 0
// broadcast, 2 addressed, -1 not classified. Number: of the message in its file, from 1.
QUARN_CLASS(cSmlMsgStatus,
            Structure<CLASS_MSG_STATUS, Required<field::MsgError>, Required<field::MsgType>,
                      Required<field::MsgCast>, Required<field::Tested<field::MsgNo>>>)

#endif
