// The entries of lists but for the one that holds a list of its own (lists.h).
//
// An entry is made from a record, or set field by field where it has setters. operator= takes over
// a valid entry; any other one clears the target. ToRecord appends a valid entry under the entry's
// own label. Names of objects are the six octets as a number, the first octet highest. A value that
// was set is present from then on, even if it is not valid.
#ifndef QUARN_RECORDS_ENTRIES_H
#define QUARN_RECORDS_ENTRIES_H

#include "quarn/records/values.h"

namespace quarn::detail
{

using PeriodEntry = ObjectOf<CLASS_PERIOD_ENTRY, schema::kPeriodEntry,
                             Required<label::objName, label::unit, label::scaler, label::value>>;
using HeaderEntry = ObjectOf<CLASS_HEADER_ENTRY, schema::kHeaderEntry,
                             Required<label::objName, label::unit, label::scaler>>;
using ValueEntry = ObjectOf<CLASS_VALUE_ENTRY, schema::kValueEntry, Required<label::value>>;
using ListEntry =
    ObjectOf<CLASS_LIST_ENTRY, schema::kListEntry, Required<label::objName, label::value>>;
using TupelEntry = ObjectOf<CLASS_TUPEL_ENTRY, schema::kTupelEntry, AllRequired,
                            Together<label::value_pA, label::value_R1, label::value_R4,
                                     label::value_mA, label::value_R2, label::value_R3>>;

} // namespace quarn::detail

// A period entry: the value of one object in a period.
class QUARN_API cSmlPeriodEntry : public quarn::detail::PeriodEntry
{
public:
    using Object::Object;

    bool GetObjName(unsigned long long& v) const noexcept { return Get<quarn::label::objName>(v); }
    bool SetObjName(const unsigned long long& v) noexcept { return Set<quarn::label::objName>(v); }
    bool GetUnit(unsigned int& v) const noexcept { return Get<quarn::label::unit>(v); }
    bool SetUnit(const unsigned int& v) noexcept { return Set<quarn::label::unit>(v); }
    bool GetScaler(int& v) const noexcept { return Get<quarn::label::scaler>(v); }
    bool SetScaler(const int& v) noexcept { return Set<quarn::label::scaler>(v); }
    bool GetValue(cSmlValue& v) const noexcept { return Get<quarn::label::value>(v); }
    bool SetValue(const cSmlValue& v) noexcept { return Set<quarn::label::value>(v); }
    bool GetValueSign(std::string& v) const noexcept
    {
        return Get<quarn::label::valueSignature>(v);
    }
    bool SetValueSign(const std::string& v) noexcept
    {
        return Set<quarn::label::valueSignature>(v);
    }
};

// A header entry: name, unit and scaler of one object in a profile.
class QUARN_API cSmlHeaderEntry : public quarn::detail::HeaderEntry
{
public:
    using Object::Object;

    bool GetObjName(unsigned long long& v) const noexcept { return Get<quarn::label::objName>(v); }
    bool GetUnit(unsigned int& v) const noexcept { return Get<quarn::label::unit>(v); }
    bool GetScaler(int& v) const noexcept { return Get<quarn::label::scaler>(v); }
};

// A value entry: a value, perhaps signed.
class QUARN_API cSmlValueEntry : public quarn::detail::ValueEntry
{
public:
    using Object::Object;

    bool GetValue(cSmlValue& v) const noexcept { return Get<quarn::label::value>(v); }
    bool GetValueSign(std::string& v) const noexcept
    {
        return Get<quarn::label::valueSignature>(v);
    }
};

// A list entry: one object of a get-list response.
class QUARN_API cSmlListEntry : public quarn::detail::ListEntry
{
public:
    using Object::Object;

    bool GetObjName(unsigned long long& v) const noexcept { return Get<quarn::label::objName>(v); }
    bool SetObjName(const unsigned long long& v) noexcept { return Set<quarn::label::objName>(v); }
    bool GetStatus(unsigned long long& v) const noexcept { return Get<quarn::label::status>(v); }
    bool SetStatus(const unsigned long long& v) noexcept { return Set<quarn::label::status>(v); }
    bool GetValTime(cSmlTime& v) const noexcept { return Get<quarn::label::valTime>(v); }
    bool SetValTime(const cSmlTime& v) noexcept { return Set<quarn::label::valTime>(v); }
    bool GetUnit(unsigned int& v) const noexcept { return Get<quarn::label::unit>(v); }
    bool SetUnit(const unsigned int& v) noexcept { return Set<quarn::label::unit>(v); }
    bool GetScaler(int& v) const noexcept { return Get<quarn::label::scaler>(v); }
    bool SetScaler(const int& v) noexcept { return Set<quarn::label::scaler>(v); }
    bool GetValue(cSmlValue& v) const noexcept { return Get<quarn::label::value>(v); }
    bool SetValue(const cSmlValue& v) noexcept { return Set<quarn::label::value>(v); }
    bool GetValueSign(std::string& v) const noexcept
    {
        return Get<quarn::label::valueSignature>(v);
    }
    bool SetValueSign(const std::string& v) noexcept
    {
        return Set<quarn::label::valueSignature>(v);
    }
};

// A tupel entry: active and reactive quantities, each a unit, a scaler and a value, with their
// signatures. All fields are required, and the getters succeed only for an entry that is valid. A
// unit, a scaler and a value are present together: as soon as one of them is.
class QUARN_API cSmlTupelEntry : public quarn::detail::TupelEntry
{
public:
    using Object::Object;

    bool GetServerId(std::string& v) const noexcept
    {
        return IsValid() && Get<quarn::label::serverId>(v);
    }
    bool SetServerId(const std::string& v) noexcept { return Set<quarn::label::serverId>(v); }
    bool GetSecIndex(cSmlTime& v) const noexcept
    {
        return IsValid() && Get<quarn::label::secIndex>(v);
    }
    bool SetSecIndex(const cSmlTime& v) noexcept { return Set<quarn::label::secIndex>(v); }
    bool GetStatus(unsigned long long& v) const noexcept
    {
        return IsValid() && Get<quarn::label::status>(v);
    }
    bool SetStatus(const unsigned long long& v) noexcept { return Set<quarn::label::status>(v); }
    bool GetUSV_pA(unsigned int& unit, int& scaler, long long& value) const noexcept
    {
        return IsValid() && Get<quarn::label::unit_pA>(unit) &&
               Get<quarn::label::scaler_pA>(scaler) && Get<quarn::label::value_pA>(value);
    }
    bool SetUSV_pA(unsigned int unit, int scaler, long long value) noexcept
    {
        return Set<quarn::label::unit_pA>(unit) && Set<quarn::label::scaler_pA>(scaler) &&
               Set<quarn::label::value_pA>(value);
    }
    bool GetUSV_R1(unsigned int& unit, int& scaler, long long& value) const noexcept
    {
        return IsValid() && Get<quarn::label::unit_R1>(unit) &&
               Get<quarn::label::scaler_R1>(scaler) && Get<quarn::label::value_R1>(value);
    }
    bool SetUSV_R1(unsigned int unit, int scaler, long long value) noexcept
    {
        return Set<quarn::label::unit_R1>(unit) && Set<quarn::label::scaler_R1>(scaler) &&
               Set<quarn::label::value_R1>(value);
    }
    bool GetUSV_R4(unsigned int& unit, int& scaler, long long& value) const noexcept
    {
        return IsValid() && Get<quarn::label::unit_R4>(unit) &&
               Get<quarn::label::scaler_R4>(scaler) && Get<quarn::label::value_R4>(value);
    }
    bool SetUSV_R4(unsigned int unit, int scaler, long long value) noexcept
    {
        return Set<quarn::label::unit_R4>(unit) && Set<quarn::label::scaler_R4>(scaler) &&
               Set<quarn::label::value_R4>(value);
    }
    bool GetSignature_pAR1R4(std::string& v) const noexcept
    {
        return IsValid() && Get<quarn::label::signature_pA_R1_R4>(v);
    }
    bool SetSignature_pAR1R4(const std::string& v) noexcept
    {
        return Set<quarn::label::signature_pA_R1_R4>(v);
    }
    bool GetUSV_mA(unsigned int& unit, int& scaler, long long& value) const noexcept
    {
        return IsValid() && Get<quarn::label::unit_mA>(unit) &&
               Get<quarn::label::scaler_mA>(scaler) && Get<quarn::label::value_mA>(value);
    }
    bool SetUSV_mA(unsigned int unit, int scaler, long long value) noexcept
    {
        return Set<quarn::label::unit_mA>(unit) && Set<quarn::label::scaler_mA>(scaler) &&
               Set<quarn::label::value_mA>(value);
    }
    bool GetUSV_R2(unsigned int& unit, int& scaler, long long& value) const noexcept
    {
        return IsValid() && Get<quarn::label::unit_R2>(unit) &&
               Get<quarn::label::scaler_R2>(scaler) && Get<quarn::label::value_R2>(value);
    }
    bool SetUSV_R2(unsigned int unit, int scaler, long long value) noexcept
    {
        return Set<quarn::label::unit_R2>(unit) && Set<quarn::label::scaler_R2>(scaler) &&
               Set<quarn::label::value_R2>(value);
    }
    bool GetUSV_R3(unsigned int& unit, int& scaler, long long& value) const noexcept
    {
        return IsValid() && Get<quarn::label::unit_R3>(unit) &&
               Get<quarn::label::scaler_R3>(scaler) && Get<quarn::label::value_R3>(value);
    }
    bool SetUSV_R3(unsigned int unit, int scaler, long long value) noexcept
    {
        return Set<quarn::label::unit_R3>(unit) && Set<quarn::label::scaler_R3>(scaler) &&
               Set<quarn::label::value_R3>(value);
    }
    bool GetSignature_mAR2R3(std::string& v) const noexcept
    {
        return IsValid() && Get<quarn::label::signature_mA_R2_R3>(v);
    }
    bool SetSignature_mAR2R3(const std::string& v) noexcept
    {
        return Set<quarn::label::signature_mA_R2_R3>(v);
    }
    // The entry is valid as soon as all fields are present; there is nothing left to do here.
    void SetClassValid() noexcept {}
};

#endif
