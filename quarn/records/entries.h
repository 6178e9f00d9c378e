// The entries of lists but for the one that holds a list of its own (lists.h).
//
// An entry is made from a record, or set field by field where it has setters. operator= takes over
// a valid entry; any other one clears the target. ToRecord appends a valid entry under the entry's
// own label. Names of objects are the six octets as a number, the first octet highest.
#ifndef QUARN_RECORDS_ENTRIES_H
#define QUARN_RECORDS_ENTRIES_H

#include "quarn/records/values.h"

namespace quarn::detail::field
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

} // namespace quarn::detail::field

namespace quarn::detail::tupel
{

// Whether the entry that the field is part of is valid.
template <class F>
bool IsWhole(const F& field) noexcept;

// A field of the tupel entry, and a unit, a scaler and a value that are present together: as soon
// as one of them is.
#define QUARN_TUPEL_FIELD(Name, Type, Label)                                                       \
    struct Name : Field<Type, label::Label> {                                                      \
        bool Get##Name(Type& v) const noexcept { return IsWhole(*this) && Get(v); }                \
        bool Set##Name(const Type& v) noexcept { return Set(v); }                                  \
    };
#define QUARN_TUPEL_TRIPLE(Name)                                                                   \
    struct USV_##Name : Triple<label::unit_##Name, label::scaler_##Name, label::value_##Name> {    \
        bool GetUSV_##Name(unsigned int& unit, int& scaler, long long& value) const noexcept       \
        {                                                                                          \
            return IsWhole(*this) && Get(unit, scaler, value);                                     \
        }                                                                                          \
        bool SetUSV_##Name(unsigned int unit, int scaler, long long value) noexcept                \
        {                                                                                          \
            return Set(unit, scaler, value);                                                       \
        }                                                                                          \
    };

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

QUARN_TUPEL_FIELD(ServerId, std::string, serverId)
QUARN_TUPEL_FIELD(SecIndex, cSmlTime, secIndex)
QUARN_TUPEL_FIELD(Status, unsigned long long, status)
QUARN_TUPEL_TRIPLE(pA)
QUARN_TUPEL_TRIPLE(R1)
QUARN_TUPEL_TRIPLE(R4)
QUARN_TUPEL_FIELD(Signature_pAR1R4, std::string, signature_pA_R1_R4)
QUARN_TUPEL_TRIPLE(mA)
QUARN_TUPEL_TRIPLE(R2)
QUARN_TUPEL_TRIPLE(R3)
QUARN_TUPEL_FIELD(Signature_mAR2R3, std::string, signature_mA_R2_R3)

struct Fields
    : FieldSet<Required<ServerId>, Required<SecIndex>, Required<Status>, Required<USV_pA>,
               Required<USV_R1>, Required<USV_R4>, Required<Signature_pAR1R4>, Required<USV_mA>,
               Required<USV_R2>, Required<USV_R3>, Required<Signature_mAR2R3>> {
    // The entry is valid as soon as all fields are present; there is nothing left to do here.
    void SetClassValid() noexcept {}
};

template <class F>
bool IsWhole(const F& field) noexcept
{
    return Engine::IsValid(CLASS_TUPEL_ENTRY, static_cast<const Fields*>(&field));
}

} // namespace quarn::detail::tupel

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
