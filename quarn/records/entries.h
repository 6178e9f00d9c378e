// The entries of lists: period entry, tupel entry, header entry, value entry and list entry. (The
// one that holds a list of its own is in lists.h.)
//
// An entry is made from a record, or set field by field where it has setters. It is valid when its
// required fields are present. operator= takes over a valid entry; any other one clears the target.
// ToRecord appends a valid entry under the entry's own label. Getters, setters and failures: see
// field.h and structure.h. Names of objects are the six octets as a number, the first octet
// highest.
#ifndef QUARN_RECORDS_ENTRIES_H
#define QUARN_RECORDS_ENTRIES_H

#include "quarn/records/values.h"

namespace quarn::detail
{

namespace field
{

QUARN_FIELD(ObjName, GetObjName, unsigned long long, objName)
QUARN_FIELD(Unit, GetUnit, unsigned int, unit)
QUARN_FIELD(Scaler, GetScaler, int, scaler)
QUARN_FIELD(Value, GetValue, cSmlValue, value)
QUARN_FIELD(ValueSign, GetValueSign, std::string, valueSignature)
QUARN_FIELD(Status, GetStatus, unsigned long long, status)
QUARN_FIELD(ValTime, GetValTime, cSmlTime, valTime)

QUARN_SETTER(ObjName, SetObjName)
QUARN_SETTER(Unit, SetUnit)
QUARN_SETTER(Scaler, SetScaler)
QUARN_SETTER(Value, SetValue) // the value is present from then on, even if it is not valid
QUARN_SETTER(ValueSign, SetValueSign)
QUARN_SETTER(Status, SetStatus)
QUARN_SETTER(ValTime, SetValTime)

// A unit, a scaler and a value that are present together: as soon as one of them is.
template <const auto& UnitLabel, const auto& ScalerLabel, const auto& ValueLabel>
struct Triple : FieldSet<Field<unsigned int, UnitLabel>, Field<int, ScalerLabel>,
                         Field<long long, ValueLabel>> {
protected:
    using U = Field<unsigned int, UnitLabel>;
    using S = Field<int, ScalerLabel>;
    using V = Field<long long, ValueLabel>;

    bool Get(unsigned int& unit, int& scaler, long long& value) const noexcept
    {
        return U::Get(unit) && S::Get(scaler) && V::Get(value);
    }
    bool Set(unsigned int unit, int scaler, long long value) noexcept
    {
        return U::Set(unit) && S::Set(scaler) && V::Set(value);
    }
    static constexpr void Describe(Description& to, unsigned rules)
    {
        Triple::FieldSet::Describe(to, rules);
        to.pNext[-1].uiRules |= RULE_TOGETHER;
    }
};

} // namespace field

namespace tupel
{

using ServerId = Field<std::string, label::serverId>;
using SecIndex = Field<cSmlTime, label::secIndex>;
using Status = Field<unsigned long long, label::status>;
using PA = field::Triple<label::unit_pA, label::scaler_pA, label::value_pA>;
using R1 = field::Triple<label::unit_R1, label::scaler_R1, label::value_R1>;
using R4 = field::Triple<label::unit_R4, label::scaler_R4, label::value_R4>;
using SignPAR1R4 = Field<std::string, label::signature_pA_R1_R4>;
using MA = field::Triple<label::unit_mA, label::scaler_mA, label::value_mA>;
using R2 = field::Triple<label::unit_R2, label::scaler_R2, label::value_R2>;
using R3 = field::Triple<label::unit_R3, label::scaler_R3, label::value_R3>;
using SignMAR2R3 = Field<std::string, label::signature_mA_R2_R3>;

struct Fields : FieldSet<Required<ServerId>, Required<SecIndex>, Required<Status>, Required<PA>,
                         Required<R1>, Required<R4>, Required<SignPAR1R4>, Required<MA>,
                         Required<R2>, Required<R3>, Required<SignMAR2R3>> {
    using U = unsigned int;
    using S = int;
    using V = long long;

    bool GetServerId(std::string& v) const noexcept { return GetWhole<ServerId>(v); }
    bool GetSecIndex(cSmlTime& v) const noexcept { return GetWhole<SecIndex>(v); }
    bool GetStatus(unsigned long long& v) const noexcept { return GetWhole<Status>(v); }
    bool GetUSV_pA(U& u, S& s, V& v) const noexcept { return GetWhole<PA>(u, s, v); }
    bool GetUSV_R1(U& u, S& s, V& v) const noexcept { return GetWhole<R1>(u, s, v); }
    bool GetUSV_R4(U& u, S& s, V& v) const noexcept { return GetWhole<R4>(u, s, v); }
    bool GetUSV_mA(U& u, S& s, V& v) const noexcept { return GetWhole<MA>(u, s, v); }
    bool GetUSV_R2(U& u, S& s, V& v) const noexcept { return GetWhole<R2>(u, s, v); }
    bool GetUSV_R3(U& u, S& s, V& v) const noexcept { return GetWhole<R3>(u, s, v); }
    bool GetSignature_pAR1R4(std::string& v) const noexcept { return GetWhole<SignPAR1R4>(v); }
    bool GetSignature_mAR2R3(std::string& v) const noexcept { return GetWhole<SignMAR2R3>(v); }

    bool SetServerId(const std::string& v) noexcept { return ServerId::Set(v); }
    bool SetSecIndex(const cSmlTime& v) noexcept { return SecIndex::Set(v); }
    bool SetStatus(const unsigned long long& v) noexcept { return Status::Set(v); }
    bool SetUSV_pA(U u, S s, V v) noexcept { return PA::Set(u, s, v); }
    bool SetUSV_R1(U u, S s, V v) noexcept { return R1::Set(u, s, v); }
    bool SetUSV_R4(U u, S s, V v) noexcept { return R4::Set(u, s, v); }
    bool SetUSV_mA(U u, S s, V v) noexcept { return MA::Set(u, s, v); }
    bool SetUSV_R2(U u, S s, V v) noexcept { return R2::Set(u, s, v); }
    bool SetUSV_R3(U u, S s, V v) noexcept { return R3::Set(u, s, v); }
    bool SetSignature_pAR1R4(const std::string& v) noexcept { return SignPAR1R4::Set(v); }
    bool SetSignature_mAR2R3(const std::string& v) noexcept { return SignMAR2R3::Set(v); }

    // The entry is valid as soon as all fields are present; there is nothing left to do here.
    void SetClassValid() noexcept {}

private:
    template <class F, typename... T>
    bool GetWhole(T&... v) const noexcept
    {
        return Engine::IsValid(CLASS_TUPEL_ENTRY, this) && F::Get(v...);
    }
};

} // namespace tupel

} // namespace quarn::detail

// A period entry: the value of one object in a period.
QUARN_CLASS(cSmlPeriodEntry,
            Structure<CLASS_PERIOD_ENTRY, Required<field::SettableObjName>,
                      Required<field::SettableUnit>, Required<field::SettableScaler>,
                      Required<field::SettableValue>, field::SettableValueSign>)

// A header entry: name, unit and scaler of one object in a profile.
QUARN_CLASS(cSmlHeaderEntry, Structure<CLASS_HEADER_ENTRY, Required<field::ObjName>,
                                       Required<field::Unit>, Required<field::Scaler>>)

// A value entry: a value, perhaps signed.
QUARN_CLASS(cSmlValueEntry, Structure<CLASS_VALUE_ENTRY, Required<field::Value>, field::ValueSign>)

// A list entry: one object of a get-list response.
QUARN_CLASS(cSmlListEntry,
            Structure<CLASS_LIST_ENTRY, Required<field::SettableObjName>, field::SettableStatus,
                      field::SettableValTime, field::SettableUnit, field::SettableScaler,
                      Required<field::SettableValue>, field::SettableValueSign>)

// A tupel entry: active and reactive quantities, each a unit, a scaler and a value, with their
// signatures. All fields are required, and the getters succeed only for an entry that is valid.
QUARN_CLASS(cSmlTupelEntry, Object<CLASS_TUPEL_ENTRY, tupel::Fields>)

#endif
