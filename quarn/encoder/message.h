// One whole message: a list of six elements, the last two of which are the CRC and the end byte.
//
//   76  transactionId  groupNo  abortOnError  body  CRC  00
//
// The CRC-16 is taken over everything from the 76 to the end of the body. Its field is 63, low
// byte, high byte; when the low byte is 00 it is 62 and the high byte alone.
#ifndef QUARN_ENCODER_MESSAGE_H
#define QUARN_ENCODER_MESSAGE_H

#include "quarn/encoder/message_body.h"
#include "quarn/foundation/framework.h"

class QUARN_API Sml_Message
{
public:
    Sml_Message() noexcept; // four empty slots
    Sml_Message(Sml_OctetString* transactionId, Sml_Unsigned8* groupNo, Sml_Unsigned8* abortOnError,
                Sml_Message_Body* body) noexcept;
    virtual ~Sml_Message(); // leaves the four objects to whoever made them
    Sml_Message(const Sml_Message&) = delete;
    Sml_Message& operator=(const Sml_Message&) = delete;

    // Appends the message, CRC and end byte to buf and sets buf's read position to its begin. A
    // buffer too small gives a truncated message, with the CRC over what was written. REQUIRES: buf
    // is not null and holds nothing unread.
    virtual void ToBin(cBuffer* buf);

    // SML_LIST_OK, or SML_LIST_BAD_INDEX when the slots could not be allocated.
    int Set_TransactionID(Sml_OctetString* e) noexcept { return list.SetElement(e, 0); }
    int Set_GroupNo(Sml_Unsigned8* e) noexcept { return list.SetElement(e, 1); }
    int Set_AbortOnError(Sml_Unsigned8* e) noexcept { return list.SetElement(e, 2); }
    int Set_MessageBody(Sml_Message_Body* e) noexcept { return list.SetElement(e, 3); }
    Sml_OctetString* Get_TransactionID() const noexcept { return Get<Sml_OctetString>(0); }
    Sml_Unsigned8* Get_GroupNo() const noexcept { return Get<Sml_Unsigned8>(1); }
    Sml_Unsigned8* Get_AbortOnError() const noexcept { return Get<Sml_Unsigned8>(2); }
    Sml_Message_Body* Get_MessageBody() const noexcept { return Get<Sml_Message_Body>(3); }

private:
    template <typename T>
    T* Get(int i) const noexcept
    {
        return static_cast<T*>(list.GetElement(i));
    }

    Sml_ListOf list;
};

// Encodes msg into a buffer of size bytes and replaces the content of result by "SmltFlags"
// (unsigned: flags) and "SmlMsgRawData" (data: the encoding). A message longer than size is
// truncated, which SmlMessageIsWhole tells and a trace line for a byte string alone. name is for
// people only and is not used. When memory runs out, result is left empty, with a trace line at
// level 2. Throws nothing.
QUARN_API void SmlMessageToBin(Sml_Message& msg, vorn::cRecord& result, unsigned int flags,
                               const char* name, long size);

namespace quarn::detail::encoder
{

// The same, with result untouched and std::bad_alloc thrown when memory runs out.
void EncodeMessage(Sml_Message& msg, vorn::cRecord& result, unsigned int flags, long size);

// What both ways of encoding end with: the CRC field and the end byte behind what buf holds, and
// the result record of its bytes, untouched when std::bad_alloc is thrown.
constexpr long kRoomForTail = 4;
void PutTail(cBuffer& buf);
void SetResult(vorn::cRecord& result, unsigned flags, const cBuffer& buf);

} // namespace quarn::detail::encoder

#endif
