// Objects of single parameters: strings, names, times, values, list types, and the header of a
// message.
#include "quarn/encoder/convert.h"
#include "quarn/encoder/tl_field.h"
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

void ReadNumber(const vorn::cRecord& rec, const Field& field, Sml_Unsigned8& out)
{
    vorn::cRecordPar par;
    if (FindField(rec, field.pcLabel, KIND_UINT, par))
        out.SetValue(static_cast<unsigned char>(par.GetUInt()));
    else
        TraceMissing(field);
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

bool WriteOctets(const vorn::cRecordPar& par, cBuffer& buf)
{
    const int size = par.GetSize();
    if (size < 1 || size > Sml_OctetString::kMaxPiece) {
        ToBin_As_Option(&buf);
        return true;
    }
    if (buf.Free() < size + kRoomForField)
        return false;
    PutOctets(buf, par.GetData(), size, size);
    return true;
}

bool WriteName(const vorn::cRecordPar& par, cBuffer& buf)
{
    PutInteger(kTlOctetString, SML_NAME_SIZE, par.GetUInt64(), buf); // written like a number
    return true;
}

Sml_Time TimeOf(const vorn::cRecord& time, unsigned type, unsigned value)
{
    if (type > SML_TIME_LOCAL_TIMESTAMP)
        type = 0;
    const bool local = type == SML_TIME_LOCAL_TIMESTAMP;
    return Sml_Time(static_cast<unsigned char>(type), value,
                    local ? OffsetOrZero(time, label::locOffset) : short{0},
                    local ? OffsetOrZero(time, label::seaOffset) : short{0});
}

Sml_Time MakeTime(const vorn::cRecordPar& par)
{
    vorn::cRecord time;
    par.GetRecord(time);
    return TimeOf(time, UIntOrZero(time, label::type), UIntOrZero(time, label::value));
}

namespace
{

template <auto kMake>
struct Maker {
    decltype(auto) operator()(const vorn::cRecordPar& par) const { return kMake(par); }
};

// Gives use what makes the value's object; false for a kind that is no plain value.
template <typename Use>
bool UseMaker(int kind, Use use)
{
    switch (kind) {
    case KIND_SINT:
        return use(Maker<MakeScalar<Sml_Integer32, &Par::GetSInt>>());
    case KIND_UINT:
        return use(Maker<MakeScalar<Sml_Unsigned32, &Par::GetUInt>>());
    case KIND_SINT64:
        return use(Maker<MakeScalar<Sml_Integer64, &Par::GetSInt64>>());
    case KIND_UINT64:
        return use(Maker<MakeScalar<Sml_Unsigned64, &Par::GetUInt64>>());
    case KIND_BOOL:
        return use(Maker<MakeScalar<Sml_Bool, &Par::GetBool>>());
    default:
        return false;
    }
}

} // namespace

Object MakeValue(const vorn::cRecordPar& par, const char* unknown, const char* dump)
{
    const int kind = par.GetType(1);
    Object scalar;
    const auto onHeap = [&](auto make) {
        scalar.reset(new auto(make(par)));
        return true;
    };
    if (UseMaker(kind, onHeap))
        return scalar;
    if (kind == KIND_DATA)
        return MakeOctets(par);
    vorn::cRecord rec;
    if (!RecordOf(par, rec)) {
        Trace(LibSmle, kError, unknown);
        return nullptr;
    }
    if (dump != nullptr)
        TraceRecord(kProgress, dump, rec);
    auto listType = std::make_unique<Sml_ListType>();
    return ConvertListType(rec, *listType) != 0 ? std::move(listType) : nullptr;
}

bool WriteValue(const vorn::cRecordPar& par, cBuffer& buf)
{
    const int kind = par.GetType(1);
    if (kind == KIND_DATA)
        return WriteOctets(par, buf);
    return UseMaker(kind, [&](auto make) {
        make(par).ToBin(&buf);
        return true;
    });
}

bool WriteFields(const vorn::cRecord& rec, const FieldTable& fields, cBuffer& buf)
{
    RecordReader<> reader(rec);
    for (const Field& field : fields) {
        if (!WriteField(reader.Find(field.pcLabel), field, buf))
            return false;
    }
    return true;
}

const std::array<Field, 3> kMsgHeader = {{
    {label::transactionId, ConversionOf(schema::aMessage[0]),
     "Rec2Hd: transactionId is missing/wrong!"},
    {label::groupNo, ConversionOf(schema::aMessage[1]), "Rec2Hd: groupNo is missing/wrong!"},
    {label::abortOnError, ConversionOf(schema::aMessage[2]),
     "Rec2Hd: abortOnError is missing/wrong!"},
}};

int ConvertMsgHeader(const vorn::cRecord& rec, Sml_OctetString& transactionId,
                     Sml_Unsigned8& groupNo, Sml_Unsigned8& abortOnError)
{
    vorn::cRecordPar par;
    if (FindField(rec, label::transactionId, KIND_DATA, par)) {
        transactionId.SetValue(par.GetData(), par.GetSize(), -1);
        RequireStored(transactionId, par.GetSize());
    } else {
        TraceMissing(kMsgHeader[0]);
    }
    ReadNumber(rec, kMsgHeader[1], groupNo);
    ReadNumber(rec, kMsgHeader[2], abortOnError);
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
    lt.Set(1, kSmlTime.how.pRead(smlList, kSmlTime).release());
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
