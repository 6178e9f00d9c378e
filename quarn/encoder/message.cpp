// The message with its CRC, and the result record.
#include "quarn/encoder/message.h"

#include "quarn/foundation/labels.h"
#include "quarn/foundation/trace.h"

#include <utility>

namespace
{

constexpr int kSlots = 6; // the last two stay empty: CRC and end byte are written by ToBin

class EncodingBuffer : public HeapBuffer
{
public:
    explicit EncodingBuffer(long size) : HeapBuffer(size, 0) {}
    ~EncodingBuffer() override { Release(); }
};

} // namespace

Sml_Message::Sml_Message() noexcept : list(kSlots, false) {}

Sml_Message::Sml_Message(Sml_OctetString* transactionId, Sml_Unsigned8* groupNo,
                         Sml_Unsigned8* abortOnError, Sml_Message_Body* body) noexcept
    : Sml_Message()
{
    Set_TransactionID(transactionId);
    Set_GroupNo(groupNo);
    Set_AbortOnError(abortOnError);
    Set_MessageBody(body);
}

Sml_Message::~Sml_Message() = default;

void Sml_Message::ToBin(cBuffer* buf)
{
    list.ToBin(buf);
    quarn::detail::encoder::PutTail(*buf);
    buf->ReadRewind();
}

void SmlMessageToBin(Sml_Message& msg, vorn::cRecord& result, unsigned int flags,
                     const char* /*name*/, long size)
{
    try {
        quarn::detail::encoder::EncodeMessage(msg, result, flags, size);
    } catch (...) {
        result.Create();
        quarn::detail::Trace(LibSmle, quarn::detail::kError, "SmlMessageToBin: out of memory");
    }
}

namespace quarn::detail::encoder
{

void EncodeMessage(Sml_Message& msg, vorn::cRecord& result, unsigned int flags, long size)
{
    EncodingBuffer buf(size);
    msg.ToBin(&buf);
    SetResult(result, flags, buf);
}

void PutTail(cBuffer& buf)
{
    const unsigned crc =
        vorn::createCRC16(buf.ReadPtr(), static_cast<int>(buf.Left()), vorn::initCRC16());
    const unsigned lowByteFirst = (crc & 0xFFU) << 8 | crc >> 8;
    Sml_Unsigned16(static_cast<unsigned short>(lowByteFirst)).ToBin(&buf);
    Sml_EndOfSmlMessage().ToBin(&buf);
}

void SetResult(vorn::cRecord& result, unsigned flags, const cBuffer& buf)
{
    vorn::cRecord encoded;
    encoded.AppendUIntPar(label::SmltFlags, flags, 0);
    encoded.AppendDataPar(label::SmlMsgRawData, buf.ReadPtr(), static_cast<int>(buf.Left()), 0);
    result = std::move(encoded);
}

} // namespace quarn::detail::encoder
