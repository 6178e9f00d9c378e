// Objects of single parameters: strings, names, times, values, list types, and the header of a
// message.
#include "quarn/encoder/convert.h"
#include "quarn/foundation/labels.h"

#include <new>

namespace quarn::detail::encoder
{
namespace
{

unsigned UIntOrZero(const vorn::cRecord& rec, const char* label)
{
    vorn::cRecordPar par;
    return FindField(rec, label, KIND_UINT, par) ? par.GetUInt() : 0;
}

short OffsetOrZero(const vorn::cRecord& rec, const char* label)
{
    vorn::cRecordPar par;
    return FindField(rec, label, KIND_SINT, par) ? static_cast<short>(par.GetSInt()) : short{0};
}

// An octet string is absent when its bytes found no memory: that must not pass for a field that was
// not set.
void RequireStored(const Sml_OctetString& string, int size)
{
    if (string.GetLength() == 0 && size >= 1 && size <= Sml_OctetString::kMaxPiece)
        throw std::bad_alloc();
}

void ReadNumber(const vorn::cRecord& rec, const char* label, Sml_Unsigned8& out,
                const char* missing)
{
    vorn::cRecordPar par;
    if (FindField(rec, label, KIND_UINT, par))
        out.SetValue(static_cast<unsigned char>(par.GetUInt()));
    else
        Trace(LibSmle, kError, missing);
}

} // namespace

std::unique_ptr<Sml_OctetString> MakeOctets(const vorn::cRecordPar& par)
{
    auto string = std::make_unique<Sml_OctetString>(par.GetData(), par.GetSize(), -1);
    RequireStored(*string, par.GetSize());
    return string;
}

std::unique_ptr<Sml_Signature> MakeSignature(const vorn::cRecordPar& par)
{
    auto signature = std::make_unique<Sml_Signature>(par.GetData(), par.GetSize());
    RequireStored(*signature, par.GetSize());
    return signature;
}

std::unique_ptr<Sml_OctetString> MakeName(const vorn::cRecordPar& par)
{
    return std::make_unique<Sml_OctetString>(static_cast<long long>(par.GetUInt64()));
}

std::unique_ptr<Sml_Time> TimeOf(const vorn::cRecord& time, unsigned type, unsigned value)
{
    if (type > SML_TIME_LOCAL_TIMESTAMP)
        type = 0;
    const bool local = type == SML_TIME_LOCAL_TIMESTAMP;
    return std::make_unique<Sml_Time>(static_cast<unsigned char>(type), value,
                                      local ? OffsetOrZero(time, label::locOffset) : short{0},
                                      local ? OffsetOrZero(time, label::seaOffset) : short{0});
}

std::unique_ptr<Sml_Time> MakeTime(const vorn::cRecordPar& par)
{
    vorn::cRecord time;
    par.GetRecord(time);
    return TimeOf(time, UIntOrZero(time, label::type), UIntOrZero(time, label::value));
}

Object MakeValue(const vorn::cRecordPar& par, const char* unknown, const char* dump)
{
    using Par = vorn::cRecordPar;
    switch (par.GetType(1)) {
    case KIND_SINT:
        return MakeScalar<Sml_Integer32, &Par::GetSInt>(par);
    case KIND_UINT:
        return MakeScalar<Sml_Unsigned32, &Par::GetUInt>(par);
    case KIND_SINT64:
        return MakeScalar<Sml_Integer64, &Par::GetSInt64>(par);
    case KIND_UINT64:
        return MakeScalar<Sml_Unsigned64, &Par::GetUInt64>(par);
    case KIND_BOOL:
        return MakeScalar<Sml_Bool, &Par::GetBool>(par);
    case KIND_DATA:
        return MakeOctets(par);
    case KIND_RECORD: {
        vorn::cRecord rec;
        par.GetRecord(rec);
        if (dump != nullptr)
            TraceRecord(kProgress, dump, rec);
        auto listType = std::make_unique<Sml_ListType>();
        if (ConvertListType(rec, *listType) == 0)
            return nullptr;
        return listType;
    }
    default:
        Trace(LibSmle, kError, unknown);
        return nullptr;
    }
}

int ConvertMsgHeader(const vorn::cRecord& rec, Sml_OctetString& transactionId,
                     Sml_Unsigned8& groupNo, Sml_Unsigned8& abortOnError)
{
    vorn::cRecordPar par;
    if (FindField(rec, label::transactionId, KIND_DATA, par)) {
        transactionId.SetValue(par.GetData(), par.GetSize(), -1);
        RequireStored(transactionId, par.GetSize());
    } else {
        Trace(LibSmle, kError, "Rec2Hd: transactionId is missing/wrong!");
    }
    ReadNumber(rec, label::groupNo, groupNo, "Rec2Hd: groupNo is missing/wrong!");
    ReadNumber(rec, label::abortOnError, abortOnError, "Rec2Hd: abortOnError is missing/wrong!");
    return 1;
}

int ConvertListType(const vorn::cRecord& rec, Sml_ListType& lt)
{
    vorn::cRecord smlList;
    if (!FindRecord(rec, label::smlList, smlList)) {
        Trace(LibSmle, kError, "Rec2ListType: RecParVal invalid/empty");
        TraceRecord(kError, "RecParVal= %s\n", rec);
        return 0;
    }
    vorn::cRecordPar par;
    if (!FindField(smlList, label::type, KIND_UINT, par)) {
        Trace(LibSmle, kError, "Rec2ListType: parType invalid/empty");
        TraceRecord(kError, "RecParVal= %s\n", rec);
        return 0;
    }
    if (par.GetUInt() != 1) {
        Trace(LibSmle, kError, "Rec2ListType: Type out of range");
        return 0;
    }
    static constexpr Field kSmlTime = {label::SmlTime, kTime,
                                       "Rec2ListType: parTime invalid/empty"};
    lt.Set(1, kSmlTime.pRead(smlList, kSmlTime).release());
    return 1;
}

void TraceRecord(vorn::eLEVEL level, const char* format, const vorn::cRecord& rec) noexcept
{
    if (!Traces(LibSmle, level))
        return;
    try {
        Trace(LibSmle, level, format, rec.ToString2(0, 0).c_str());
    } catch (...) { // no memory for the line: it is lost
    }
}

std::unique_ptr<Sml_ListOf> MakeList(int n)
{
    auto list = std::make_unique<Sml_ListOf>(n, true);
    if (list->GetCount() != n)
        throw std::bad_alloc();
    return list;
}

void Place(Sml_ListOf& list, Object element, int slot)
{
    if (list.SetElement(element.get(), slot) == SML_LIST_OK)
        static_cast<void>(element.release());
}

} // namespace quarn::detail::encoder
