// The message with its CRC, and the result record.
#include "quarn/encoder/message.h"

#include "quarn/encoder/encode.h"
#include "quarn/foundation/fields.h"
#include "quarn/foundation/labels.h"
#include "quarn/foundation/tl.h"
#include "quarn/foundation/trace.h"

#include <cstdint>
#include <utility>

namespace
{

// The last two stay empty: CRC and end byte are written by ToBin.
constexpr int kSlots = quarn::schema::kMessage.uiCount;

class EncodingBuffer : public HeapBuffer
{
public:
    explicit EncodingBuffer(long size) : HeapBuffer(size, 0) {}
    ~EncodingBuffer() override { Release(); }
};

unsigned ByteAt(const char* at) { return static_cast<unsigned char>(*at); }

// Steps over n elements with all that they hold; null when they are not all there.
const char* PastElements(const char* at, const char* end, unsigned long long n)
{
    using namespace quarn::detail;
    while (n > 0) {
        if (at == end || ByteAt(at) == kEndOfSmlMsg)
            return nullptr;
        const char* const field = at;
        std::uint32_t length = 0;
        unsigned byte = kTlMore;
        for (; (byte & kTlMore) != 0; ++at) {
            if (at == end)
                return nullptr;
            byte = ByteAt(at);
            length = length << 4 | (byte & kTlLengthMask);
        }
        --n;
        if ((ByteAt(field) & kTlTypeMask) == kTlList)
            n += length;
        else if (length < static_cast<std::uint32_t>(at - field) ||
                 length > static_cast<std::uint32_t>(end - field))
            return nullptr;
        else
            at = field + length;
    }
    return at;
}

bool IsWhole(const char* at, const char* end)
{
    using namespace quarn::detail;
    constexpr unsigned kHead = kTlList | kSlots;
    if (at == end || ByteAt(at) != kHead)
        return false;
    at = PastElements(at + 1, end, kSlots - 2);
    if (at == nullptr || at == end || (ByteAt(at) & kTlTypeMask) != kTlUnsigned)
        return false;
    at = PastElements(at, end, 1); // the CRC
    return at != nullptr && end - at == 1 && ByteAt(at) == kEndOfSmlMsg;
}

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

bool SmlMessageIsWhole(const vorn::cRecord& result)
{
    try {
        vorn::cRecordPar bytes;
        return quarn::detail::FindField(result, quarn::detail::label::SmlMsgRawData,
                                        quarn::detail::KIND_DATA, bytes) &&
               IsWhole(bytes.GetData(), bytes.GetData() + bytes.GetSize());
    } catch (...) { // the framework found no memory for the parameter
        return false;
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
