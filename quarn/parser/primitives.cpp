// The primitives: TL fields, integers, octet strings and the end-of-message byte. Each takes what
// the input holds, in bulk, and keeps its place in the primitive cache when the input or the
// message store runs out. Only here are bytes of the input consumed.
//
// Room in the store is claimed when a TL field or an integer begins, not again when it goes on, so
// that packets end at the same byte however the input is cut.
#include "quarn/parser/engine.h"

#include "quarn/foundation/tl.h"

#include <algorithm>
#include <cstring>

using namespace quarn::detail;

void cSMLP::CleanUp_Cache() noexcept
{
    ePrimitive = Primitive::None;
    uiCacheCnt = 0;
    uiCacheLen = 0;
}

int cSMLP::Decode_TLField() noexcept
{
    if (pucInData == pucInEnd)
        return RC_INPUT_EMPTY;
    const unsigned b = *pucInData;
    if ((b & kTlMore) != 0 || ePrimitive != Primitive::None)
        return Decode_LongTLField();
    if (StoreFree() == 0)
        return RC_STORE_FULL;
    ++pucInData;
    const unsigned length = b & kTlLengthMask;
    const unsigned payload = length - (length != 0 ? 1U : 0U);
    uiTLF_Count = payload;
    uiTLF_Type = b & kTlTypeMask;
    switch (uiTLF_Type) {
    case kTlOctetString:
        uiTLF_Type = payload != 0 ? TLF_OCTET_STRING : TLF_ABSENT;
        return RC_DONE;
    case TLF_BOOLEAN:
        return payload <= 4 ? RC_DONE : RC_TL_INTEGER_LENGTH;
    case TLF_INTEGER:
    case TLF_UNSIGNED:
        return payload <= 8 ? RC_DONE : RC_TL_INTEGER_LENGTH;
    case TLF_LIST:
        uiTLF_Count = length;
        return RC_DONE;
    default:
        return Refuse({RC_TL_TYPE, "TL-Decoder:reserved type (0x%2x)!, smlp[%d]"}, b);
    }
}

// A field of several bytes: only octet strings and lists have one.
int cSMLP::Decode_LongTLField() noexcept
{
    if (ePrimitive == Primitive::None) {
        if (StoreFree() < aucTLFCache.size())
            return RC_STORE_FULL;
        uiTLF_Count = 0;
        ePrimitive = Primitive::TlField;
    }
    bool more = true;
    while (more && pucInData != pucInEnd && uiCacheCnt < aucTLFCache.size()) {
        const unsigned char b = *pucInData++;
        aucTLFCache[uiCacheCnt] = b;
        if (uiCacheCnt == 0) {
            const unsigned type = b & kTlTypeMask;
            if (type != kTlOctetString && type != kTlList) {
                CleanUp_Cache();
                return Refuse({RC_TL_TYPE, "TL-Decoder:reserved type (0x%2x)!, smlp[%d]"}, b);
            }
            uiTLF_Type = type == kTlList ? TLF_LIST : TLF_OCTET_STRING;
        }
        uiTLF_Count = uiTLF_Count << 4 | (b & kTlLengthMask);
        ++uiCacheCnt;
        more = (b & kTlMore) != 0;
    }
    if (more) {
        if (uiCacheCnt < aucTLFCache.size())
            return RC_INPUT_EMPTY;
        CleanUp_Cache();
        const auto& tl = aucTLFCache;
        Say(kError, "TL-Decoder:Length>Max:0x%02x%02x%02x%02x%02x%02x%02x%02x, smlp[%d]", tl[0],
            tl[1], tl[2], tl[3], tl[4], tl[5], tl[6], tl[7]);
        return RC_TL_TOO_LONG;
    }
    const std::uint32_t itself = uiTLF_Type == TLF_OCTET_STRING ? uiCacheCnt : 0;
    CleanUp_Cache();
    if (uiTLF_Count <= itself)
        return Refuse({RC_TL_ZERO, "TL-Decoder:uiTLF_Count <= 0, smlp[%d]"});
    uiTLF_Count -= itself;
    return RC_DONE;
}

// len bytes, most significant first, into ullInteger. REQUIRES: len <= 8.
int cSMLP::Parse_IntegerTypes(std::uint32_t len) noexcept
{
    if (ePrimitive == Primitive::None) {
        if (len > StoreFree())
            return pucInData == pucInEnd ? RC_INPUT_EMPTY : RC_STORE_FULL;
        uiCacheLen = len;
        ullInteger = 0;
    }
    while (uiCacheLen != 0 && pucInData != pucInEnd) {
        ullInteger = ullInteger << 8 | *pucInData++;
        --uiCacheLen;
    }
    if (uiCacheLen != 0) {
        ePrimitive = Primitive::Integer;
        return RC_INPUT_EMPTY;
    }
    CleanUp_Cache();
    return RC_DONE;
}

// An octet string of len bytes, delivered at pucString (kept) or passed over. A string longer than
// max is delivered in chunks of max bytes, each announced by RC_CHUNK. The bytes of one that lies
// whole in the input stay there. REQUIRES: kept strings have a max of at most SML_VALUE_CHUNK.
int cSMLP::Parse_OctetString(std::uint32_t len, std::uint32_t max, bool keep) noexcept
{
    if (ePrimitive == Primitive::None) {
        uiOctStrState = 0;
        if (len <= InputLeft() && len <= max && len <= StoreFree()) {
            pucString = pucInData;
            uiStringLen = len;
            pucInData += len;
            return RC_DONE;
        }
        ePrimitive = Primitive::Octets;
        uiCacheLen = len;
        uiCacheCnt = 0;
    }
    const std::uint32_t n =
        std::min({InputLeft(), StoreFree(), uiCacheLen - uiCacheCnt, max - uiCacheCnt});
    if (keep && n != 0)
        std::memcpy(aucValueBuf.data() + uiCacheCnt, pucInData, n);
    pucInData += n;
    uiCacheCnt += n;
    if (uiCacheCnt < uiCacheLen) {
        if (uiCacheCnt < max)
            return StoreFree() == 0 ? RC_STORE_FULL : RC_INPUT_EMPTY;
        if (InputLeft() == 0)
            return RC_INPUT_EMPTY;
        pucString = aucValueBuf.data();
        uiStringLen = uiCacheCnt;
        uiCacheLen -= uiCacheCnt;
        uiCacheCnt = 0;
        uiOctStrState = uiOctStrState == 0 ? 1 : 2;
        return RC_CHUNK;
    }
    pucString = aucValueBuf.data();
    uiStringLen = uiCacheCnt;
    if (uiOctStrState != 0)
        uiOctStrState = 3;
    CleanUp_Cache();
    return RC_DONE;
}

// A piece that belongs to the primitive in progress and does not end it, as most pieces of one byte
// do, goes to where its reader would take it; false, and nothing done, when there is more to it.
// REQUIRES: no input is under way.
bool cSMLP::FeedPrimitive(const unsigned char* piece, std::uint32_t size) noexcept
{
    const std::uint32_t read = uiCacheCnt + size;
    if (size == 0 || read >= uiCacheLen || read >= SML_VALUE_CHUNK || size >= StoreFree() ||
        Traces(LibSmlp, kDetail))
        return false;
    if (ePrimitive == Primitive::Octets) {
        CopyBytes(aucValueBuf.data() + uiCacheCnt, piece, size);
        uiCacheCnt = read;
    } else if (ePrimitive == Primitive::Integer) {
        for (std::uint32_t i = 0; i < size; ++i)
            ullInteger = ullInteger << 8 | piece[i];
        uiCacheLen -= size;
    } else {
        return false;
    }
    CopyBytes(aucMsgBuf.data() + uiMsgLen, piece, size);
    uiMsgLen += size;
    usEvents = 0;
    return true;
}

int cSMLP::Parse_EndOfSmlMsg() noexcept
{
    if (StoreFree() == 0)
        return RC_STORE_FULL;
    if (pucInData == pucInEnd)
        return RC_INPUT_EMPTY;
    const unsigned b = *pucInData;
    if (b == kEndOfSmlMsg) {
        ++pucInData;
        return RC_DONE;
    }
    KeepRun(); // the byte is consumed, but not part of the message
    pucRun = ++pucInData;
    return Refuse({RC_END_OF_MSG, "EndOfSmlMsg:Char=0x%02x!, smlp[%d]"}, b);
}
