// What stands beside the body in a message record: the message's header and the parser's status.
// Both classes work like those of bodies.h. A record without a header is traced at level 2; one
// without a status is not traced.
#ifndef QUARN_RECORDS_ENVELOPE_H
#define QUARN_RECORDS_ENVELOPE_H

#include "quarn/records/bodies.h"

namespace quarn::detail
{

using MsgHeader = ObjectOf<CLASS_MSG_HEADER, schema::kMsgHeader, AllRequired>;
using MsgStatus = ObjectOf<CLASS_MSG_STATUS, schema::kStatus, AllRequired>;

} // namespace quarn::detail

// The header: the message's own four fields, then what the open message of its file said.
class QUARN_API cSmlMsgHeader : public quarn::detail::MsgHeader
{
public:
    using Object::Object;

    bool GetTransactionId(std::string& v) const noexcept
    {
        return Get<quarn::label::transactionId>(v);
    }
    bool GetGroupNo(unsigned int& v) const noexcept { return Get<quarn::label::groupNo>(v); }
    bool GetAbortOnError(unsigned int& v) const noexcept
    {
        return Get<quarn::label::abortOnError>(v);
    }
    bool GetSmlMsgIdentifier(unsigned int& v) const noexcept
    {
        return Get<quarn::label::smlMsgIdentifier>(v);
    }
    bool GetOpenClientId(std::string& v) const noexcept { return Get<quarn::label::openCid>(v); }
    bool GetOpenReqFileId(std::string& v) const noexcept { return Get<quarn::label::openRfid>(v); }
    bool GetOpenServerId(std::string& v) const noexcept { return Get<quarn::label::openSid>(v); }
    bool GetOpenTId(std::string& v) const noexcept { return Get<quarn::label::openTid>(v); }
    bool GetOpenGrpNo(unsigned int& v) const noexcept { return Get<quarn::label::openGNo>(v); }
    bool GetOpenAbort(unsigned int& v) const noexcept { return Get<quarn::label::openAOE>(v); }

    // For hosts that ask for it: the object is valid as soon as all fields are present, so there is
    // nothing left to do.
    void TestClass_SetValid() noexcept {}
};

// The status. Error: 0, or why the message was refused. Type: 0 request, 1 response. Cast: 0
// broadcast, 2 addressed, -1 not classified. Number: of the message in its file, from 1.
class QUARN_API cSmlMsgStatus : public quarn::detail::MsgStatus
{
public:
    using Object::Object;

    bool GetMsgError(int& v) const noexcept { return Get<quarn::label::Error>(v); }
    bool GetMsgType(int& v) const noexcept { return Get<quarn::label::Type>(v); }
    bool GetMsgCast(int& v) const noexcept { return Get<quarn::label::Cast>(v); }
    bool GetMsgNo(unsigned int& v) const noexcept { return Get<quarn::label::MsgNoInFile>(v); }

    // For hosts that ask for it: the object is valid as soon as all fields are present, so there is
    // nothing left to do.
    void TestClass_SetValid() noexcept {}
};

#endif
