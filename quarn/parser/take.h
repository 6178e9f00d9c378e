// The short way: plain fields that lie whole in the input, in the usual form, are taken without
// asking what else could be. It is compiled for each table of fields that has it, so that what the
// table says costs nothing at run time.
//
// Whatever is unusual about a field (it may be refused, runs over the end of the input or of the
// message store, has a TL field of several bytes) is left, untouched, to its reader, which knows
// every case; so nothing is decided here that a reader would decide otherwise. Private to the wing.
#ifndef QUARN_PARSER_TAKE_H
#define QUARN_PARSER_TAKE_H

#include "quarn/foundation/tl.h"
#include "quarn/parser/engine.h"

#include <algorithm>
#include <iterator>
#include <utility>

// The input that may be taken: what there is of it and what the store has room for.
struct cSMLP::Whole {
    const unsigned char* p;
    const unsigned char* end;

    unsigned Tl() const noexcept { return *p; }
    unsigned Type() const noexcept { return *p & ~quarn::detail::kTlLengthMask; }
    // The length that a TL field of one byte gives; very large for 0.
    unsigned Length() const noexcept { return (*p & quarn::detail::kTlLengthMask) - 1; }
    bool Holds(std::ptrdiff_t bytes) const noexcept { return end - p >= bytes; }

    // The integer of len bytes behind the TL field. REQUIRES: len in 1 to 8, kLeastTaken bytes.
    std::uint64_t Integer(unsigned len) const noexcept
    {
        const std::uint64_t all = std::uint64_t{p[1]} << 56 | std::uint64_t{p[2]} << 48 |
                                  std::uint64_t{p[3]} << 40 | std::uint64_t{p[4]} << 32 |
                                  std::uint64_t{p[5]} << 24 | std::uint64_t{p[6]} << 16 |
                                  std::uint64_t{p[7]} << 8 | std::uint64_t{p[8]};
        return all >> (64 - 8 * len);
    }
};

// Takes the fields of the innermost structure, from the one it stands at: RC_DONE behind the last,
// RC_LEFT before one that is not plain, RC_ENTERED in a structure inside it, or what a hook
// answers.
template <const auto& Fields>
int cSMLP::TakeFields(Frame& frame)
{
    return TakeEach<Fields>(frame, std::make_index_sequence<std::size(Fields)>());
}

template <const auto& Fields, std::size_t... I>
int cSMLP::TakeEach(Frame& frame, std::index_sequence<I...>)
{
    Whole in{pucInData, pucInData + std::min(InputLeft(), StoreFree())};
    const std::uint32_t first = frame.uiIndex - 1;
    int rc = quarn::detail::RC_DONE;
    const auto take = [&](auto index, int taken) {
        rc = taken;
        if (rc == quarn::detail::RC_DONE)
            return true;
        frame.uiIndex = static_cast<std::uint32_t>(index + 1);
        return false;
    };
    (void)((I < first || take(I, TakeField<Fields, I>(frame, in))) && ...);
    pucInData = in.p;
    if (rc == quarn::detail::RC_DONE)
        frame.uiIndex = sizeof...(I) + 1;
    return rc;
}

template <const auto& Fields, std::size_t I>
inline int cSMLP::TakeField(Frame& frame, Whole& in)
{
    constexpr const Field& field = Fields[I];
    if constexpr (field.eShape == Shape::Special) {
        return TakeByReader<Fields, I>(in);
    } else {
        if (!in.Holds(kLeastTaken))
            return quarn::detail::RC_LEFT;
        if constexpr (field.eShape == Shape::Number)
            return TakeNumber<Fields, I>(frame, in);
        else if constexpr (field.eShape == Shape::Octets)
            return TakeOctets<Fields, I>(frame, in);
        else if constexpr (field.eShape == Shape::Value)
            return TakeValue(frame, in, field.eKeep != Keep::Nothing);
        else
            return TakeStructure(field, in);
    }
}

// A field that only its reader knows. The list of a structure that the reader has entered is taken
// with it where it is as it should be.
template <const auto& Fields, std::size_t I>
inline int cSMLP::TakeByReader(Whole& in)
{
    constexpr Field::Reader reader = Fields[I].pfnRead;
    pucInData = in.p;
    const int rc = (this->*reader)(Fields[I]);
    in.p = pucInData;
    if (rc == quarn::detail::RC_ENTERED && in.Holds(1))
        TakeList(aFrames[uiDepth], in);
    return rc;
}

// The TL field of the list of a structure just entered, if it is one byte and right.
inline void cSMLP::TakeList(Frame& entered, Whole& in)
{
    using namespace quarn::detail;
    const Layout& layout = *entered.pLayout;
    if (entered.uiIndex != 0 || layout.IsListOf() || in.Type() != kTlList ||
        (in.Tl() & kTlLengthMask) != layout.uiCount)
        return;
    entered.uiIndex = 1;
    ++in.p;
}

template <const auto& Fields, std::size_t I>
inline int cSMLP::TakeNumber(Frame& frame, Whole& in)
{
    using namespace quarn::detail;
    constexpr const Field& field = Fields[I];
    if (field.bOptional && in.Tl() == kOptionAbsent) {
        uiTLF_Type = TLF_ABSENT;
        ++in.p;
        return RC_DONE;
    }
    const unsigned len = in.Length();
    constexpr unsigned least = std::max(field.uiMin, 1U);
    constexpr unsigned most = std::min(field.uiMax, 8U);
    if (in.Type() != field.ucType || len - least > most - least)
        return RC_LEFT;
    const std::uint64_t value = in.Integer(len);
    in.p += 1 + len;
    if constexpr (field.pfnHook != nullptr) {
        uiTLF_Type = field.ucType;
        uiTLF_Count = len;
        ullInteger = value;
        const int rc = TellHook<Fields, I>(in);
        if (rc != RC_DONE)
            return rc;
    }
    if (field.bLabelled && field.eKeep != Keep::Nothing && frame.bKept) {
        frame.bFilled = true;
        AppendNumber(field, value, len);
    }
    return RC_DONE;
}

template <const auto& Fields, std::size_t I>
inline int cSMLP::TellHook(const Whole& in)
{
    constexpr Field::Hook hook = Fields[I].pfnHook;
    pucInData = in.p;
    return (this->*hook)();
}

template <const auto& Fields, std::size_t I>
inline int cSMLP::TakeOctets(Frame& frame, Whole& in)
{
    using namespace quarn::detail;
    constexpr const Field& field = Fields[I];
    const unsigned len = in.Length();
    if (in.Type() != kTlOctetString || len > std::min(field.uiMax, 14U) || !in.Holds(1 + len) ||
        (!field.bOptional && len == 0))
        return RC_LEFT;
    uiTLF_Type = len != 0 ? TLF_OCTET_STRING : TLF_ABSENT;
    pucString = len != 0 ? in.p + 1 : nullptr;
    uiStringLen = len;
    in.p += 1 + len;
    if constexpr (field.pfnHook != nullptr) {
        uiTLF_Count = len;
        const int rc = TellHook<Fields, I>(in);
        if (rc != RC_DONE)
            return rc;
    }
    if (field.bLabelled && field.eKeep != Keep::Nothing && frame.bKept &&
        (len != 0 || field.eKeep != Keep::IfSet))
        AppendOctets(frame, field);
    return RC_DONE;
}

inline int cSMLP::TakeValue(Frame& frame, Whole& in, bool keep)
{
    using namespace quarn::detail;
    const unsigned len = in.Length();
    const unsigned type = in.Type();
    if (type == kTlOctetString && len <= 14 && in.Holds(1 + len)) {
        uiTLF_Type = len != 0 ? TLF_OCTET_STRING : TLF_ABSENT;
        pucString = len != 0 ? in.p + 1 : nullptr;
        uiStringLen = len;
    } else if (type >= kTlBoolean && type <= kTlUnsigned &&
               len - 1 <= (type == kTlBoolean ? 3U : 7U)) {
        uiTLF_Type = type;
        ullInteger = in.Integer(len);
    } else {
        return RC_LEFT;
    }
    uiTLF_Count = len;
    in.p += 1 + len;
    if (keep && frame.bKept)
        bProcParValSet = KeepValue(frame);
    return RC_DONE;
}

// A list with the right number of elements, in one byte; or nothing, where that is all there is to
// it.
inline int cSMLP::TakeStructure(const Field& field, Whole& in)
{
    using namespace quarn::detail;
    const Layout& layout = *field.pLayout;
    if (in.Tl() == kOptionAbsent && field.bOptional && field.eKeep != Keep::Always &&
        field.pfnHook == nullptr) {
        uiTLF_Type = TLF_ABSENT;
        ++in.p;
        return RC_DONE;
    }
    const unsigned count = in.Tl() & kTlLengthMask;
    if (in.Type() != kTlList || (count != layout.uiCount && !layout.IsListOf()))
        return RC_LEFT;
    const int rc = EnterKept(layout, field);
    if (rc == RC_ENTERED) {
        Frame& entered = aFrames[uiDepth];
        entered.uiCount = count;
        entered.uiIndex = 1;
        if (layout.IsListOf() && entered.bOwn)
            builder.Expect(Believed(layout, count, static_cast<std::uint32_t>(in.end - in.p)));
        ++in.p;
    }
    return rc;
}

// The elements of a list, one structure after the other. RC_ENTERED: in one that is not plain.
template <const auto& Fields>
int cSMLP::TakeElements(Frame& frame)
{
    using namespace quarn::detail;
    const Layout& element = *Fields[0].pLayout;
    while (frame.uiIndex <= frame.uiCount) {
        Whole in{pucInData, pucInData + std::min(InputLeft(), StoreFree())};
        if (!in.Holds(kLeastTaken))
            return RC_LEFT;
        int rc = TakeStructure(Fields[0], in);
        pucInData = in.p;
        if (rc == RC_ENTERED) {
            rc = (this->*element.pfnTake)(aFrames[uiDepth]);
            if (rc == RC_LEFT)
                return RC_ENTERED;
            if (rc == RC_DONE)
                rc = Leave();
        } else if (rc == RC_DONE) {
            ++frame.uiIndex;
        }
        if (rc != RC_DONE)
            return rc;
    }
    return RC_DONE;
}

#endif
