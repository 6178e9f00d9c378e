// The structures that several messages share, as tables: times, values with what surrounds them,
// list entries, and the entries of profiles.
#include "quarn/parser/take.h"

#include <string>

using namespace quarn::detail;
namespace schema = quarn::schema;

// ---- Times and list types

constexpr std::array<cSMLP::Field, 2> cSMLP::Tables::aTime = {
    Tag()
        .Refused({RC_TIME_CHOICE_TYPE, "Time:Choice-Type, smlp[%d]"},
                 {RC_TIME_CHOICE_LENGTH, "Time:Choice-Len, smlp[%d]"})
        .Kept(Keep::Always)
        .Then(&cSMLP::CheckTimeChoice),
    Field::Number()
        .ReadBy(&cSMLP::ReadTimeValue)
        .Refused({RC_TIME_TYPE, "Time:Type=%d, smlp[%d]"},
                 {RC_TIME_LENGTH, "Time:Len=%d, smlp[%d]"})
        .Kept(Keep::Always)
        .Over(schema::aTime[0]),
};
const cSMLP::Layout cSMLP::Tables::kTime = Layout{
    aTime.data(),
    aTime.size(),
    {RC_FIELD_TYPE, "Time:Seq-Type, smlp[%d]"},
    {RC_FIELD_TYPE, "Time:Seq-Type, smlp[%d]"},
    {RC_NOT_OPTIONAL,
     "Time:Optional not supported!, smlp[%d]"}}.TakenBy(&cSMLP::TakeFields<aTime>);

int cSMLP::CheckTimeChoice()
{
    ucChoice = static_cast<unsigned char>(ullInteger);
    if (ucChoice >= 1 && ucChoice <= 3)
        return RC_DONE;
    return Refuse({RC_TIME_CHOICE_VALUE, "Time:Choice-Value=%d, smlp[%d]"}, ucChoice);
}

const cSMLP::Layout cSMLP::Tables::kLocalTimestamp{
    aLocalTimestamp.data(),
    aLocalTimestamp.size(),
    {RC_LOCAL_TIME_TYPE, "LocalTimestamp:Seq-Type, smlp[%d]"},
    {RC_LOCAL_TIME_COUNT, "LocalTimestamp:Seq-Len, smlp[%d]"},
    {}};
const std::array<cSMLP::Field, 3> cSMLP::Tables::aLocalTimestamp =
    Fields(schema::aLocalTime,
           {
               Field::Number()
                   .Refused({RC_TIME_TYPE, "LocTimestamp:Type=%d, smlp[%d]"},
                            {RC_TIME_LENGTH, "LocTimestamp:Len=%d, smlp[%d]"})
                   .Kept(Keep::Always),
               Field::Number()
                   .Refused({RC_LOC_OFFSET_TYPE, "LocOffset:Type=%d, smlp[%d]"},
                            {RC_LOC_OFFSET_LENGTH, "LocOffset:Len=%d, smlp[%d]"})
                   .Kept(Keep::Always),
               Field::Number()
                   .Refused({RC_SEA_OFFSET_TYPE, "LocSumTimeOffset:Type=%d, smlp[%d]"},
                            {RC_SEA_OFFSET_LENGTH, "LocSumTimeOffset:Len=%d, smlp[%d]"})
                   .Kept(Keep::Always),
           });

constexpr std::array<cSMLP::Field, 2> cSMLP::Tables::aListType = {
    Tag()
        .Refused({RC_LIST_TYPE_CHOICE_TYPE, "SML_ListType:Choice-Type, smlp[%d]"},
                 {RC_LIST_TYPE_CHOICE_LENGTH, "SML_ListType:Choice-Len, smlp[%d]"})
        .Kept(Keep::Always)
        .Then(&cSMLP::CheckListTypeChoice),
    Field::Structure(kTime)
        .Kept(Keep::Always)
        .Then(&cSMLP::TellListType)
        .Over(schema::aListType[0]),
};
const cSMLP::Layout cSMLP::Tables::kListType =
    Layout{aListType.data(),
           aListType.size(),
           {RC_LIST_TYPE_TYPE, "SML_ListType:Seq-Type!, smlp[%d]"},
           {RC_LIST_TYPE_COUNT, "SML_ListType:Seq-Cnt!, smlp[%d]"},
           {}};

int cSMLP::CheckListTypeChoice()
{
    if (ullInteger == 1)
        return RC_DONE;
    return Refuse({RC_LIST_TYPE_CHOICE_VALUE, "SML_ListType:Choice-Value!, smlp[%d]"});
}

int cSMLP::TellListType()
{
    Say(kDetail, "SML_Value:ListType: rc=%d, smlp[%d]", int{RC_DONE});
    return RC_DONE;
}

// ---- Fields that several entries share

namespace
{

constexpr char kScalerType[] = "Scaler:Type, smlp[%d]";
constexpr char kScalerLen[] = "Scaler:Len, smlp[%d]";

} // namespace

struct cSMLP::Shared {
    // The name of an entry: refused without a trace unless it is an octet string.
    static constexpr Field ObjName(Refusal type = {RC_FIELD_TYPE, nullptr})
    {
        return Field::Octets().Refused(type, {RC_STRING_LENGTH, nullptr});
    }
    // A unit that must be there.
    static constexpr Field Unit()
    {
        return Field::Number().Refused({RC_UNIT_TYPE, "Unit:Type, smlp[%d]"},
                                       {RC_UNIT_LENGTH, "Unit:Len, smlp[%d]"},
                                       {RC_NOT_OPTIONAL, "Unit:Optional not supported!, smlp[%d]"});
    }
    static constexpr Field Scaler(Refusal type, Refusal length)
    {
        return Field::Number().Refused(type, length);
    }
    static constexpr Field PlainScaler()
    {
        return Scaler({RC_SCALER_TYPE, kScalerType}, {RC_SCALER_LENGTH, kScalerLen});
    }
    static constexpr Field Value() { return Field::Of(&cSMLP::ReadValue, Shape::Value); }
    static constexpr Field KeptValue() { return Value().Kept(Keep::Always); }
    // A signature that is passed over.
    static constexpr Field Signature()
    {
        return Field::Octets().Refused({RC_SIGNATURE_TYPE, "Signature:Seq-Type, smlp[%d]"}, {});
    }
    static constexpr Field ValueSignature() { return Field::String().Kept(Keep::IfSet); }
};

// ---- Get-list response

constexpr std::array<cSMLP::Field, 7> cSMLP::Tables::aListEntry = Fields(
    schema::aListEntry, {
                            Shared::ObjName().Kept(Keep::IfSet),
                            Field::Number()
                                .Refused({RC_STATUS_TYPE, nullptr}, {RC_STATUS_LENGTH, nullptr})
                                .Kept(Keep::Always),
                            Field::Structure(kTime).Kept(Keep::IfSet),
                            Field::Number()
                                .Refused({RC_SCALER_TYPE, "SML_ListEntry:Unit-Type, smlp[%d]"},
                                         {RC_SCALER_LENGTH, "SML_ListEntry:Unit-Len, smlp[%d]"})
                                .Kept(Keep::Always),
                            Shared::Scaler({RC_SCALER_TYPE, "SML_ListEntry:Scaler-Type, smlp[%d]"},
                                           {RC_SCALER_LENGTH, "SML_ListEntry:Scaler-Len, smlp[%d]"})
                                .Kept(Keep::Always),
                            Shared::KeptValue(),
                            Shared::ValueSignature(),
                        });
const cSMLP::Layout cSMLP::Tables::kListEntry = Layout{
    aListEntry.data(),
    aListEntry.size(),
    {RC_LIST_ENTRY_TYPE, "SML_ListEntry:Seq-Type:0x%02x%02x%02x%02x, smlp[%d]"},
    {RC_LIST_ENTRY_COUNT, "SML_ListEntry:Seq-Len, smlp[%d]"},
    {}}.TakenBy(&cSMLP::TakeFields<aListEntry>);

constexpr std::array<cSMLP::Field, 1> cSMLP::Tables::aList = {
    Field::Structure(kListEntry).Kept(Keep::Always).Over(schema::kListElement),
};
const cSMLP::Layout cSMLP::Tables::kList = Layout{aList.data(),
                                                  0,
                                                  {RC_LIST_TYPE, "SML_List:Seq-Type, smlp[%d]"},
                                                  {},
                                                  {},
                                                  nullptr,
                                                  "SML_List: Elem=%d, smlp[%d]"}
                                               .TakenBy(&cSMLP::TakeElements<aList>);

// ---- Profiles

const cSMLP::Layout cSMLP::Tables::kObjReqList{
    aObjReqList.data(),
    0,
    {RC_OBJ_REQ_LIST_TYPE, "ListOf_ObjReqEntry:Wrong Type, smlp[%d]"},
    {},
    {}};
const std::array<cSMLP::Field, 1> cSMLP::Tables::aObjReqList = {
    Shared::ObjName({RC_OBJ_REQ_ENTRY_TYPE, "ObjReqEntry:Seq-Type, smlp[%d]"})
        .Then(&cSMLP::KeepObjReqEntry)
        .Over(schema::kObjectElement),
};

int cSMLP::KeepObjReqEntry()
{
    if (uiStringLen != SML_NAME_SIZE) {
        if (Traces(LibSmlp, kError)) {
            const std::string object(reinterpret_cast<const char*>(pucString), uiStringLen);
            Say(kError, "ListOf_ObjReqEntry:ObjectLen>6 (Object=%s)!, smlp[%d]", object.c_str());
        }
        return RC_DONE;
    }
    const std::uint64_t number = NameNumber(pucString, uiStringLen);
    Target().AppendUInt64Par(kLabel<label::object_List_Entry>, number, 0);
    Say(kDetail, "ListOf_ObjReqEntry: ObisNum=0x%04x%08x, smlp[%d]",
        static_cast<unsigned>(number >> 32), static_cast<unsigned>(number & 0xFFFFFFFFU));
    return RC_DONE;
}

constexpr std::array<cSMLP::Field, 3> cSMLP::Tables::aHeaderEntry =
    Fields(schema::aHeaderEntry,
           {
               Field::Octets().Refused(
                   {RC_HEADER_OBJ_NAME, "ProfObjHdEntry:TL-Field(objName), smlp[%d]"}, {}),
               Shared::Unit(),
               Shared::Scaler({RC_FIELD_TYPE, "ProfObjHdEntry:TL-Field(scaler), smlp[%d]"},
                              {RC_FIELD_TYPE, "ProfObjHdEntry:TL-Field(scaler), smlp[%d]"}),
           });
const cSMLP::Layout cSMLP::Tables::kHeaderEntry =
    Layout{aHeaderEntry.data(),
           aHeaderEntry.size(),
           {RC_HEADER_ENTRY_TYPE, "ProfObjHdEntry:Seq-Type, smlp[%d]"},
           {RC_HEADER_ENTRY_COUNT, "ProfObjHdEntry:Seq-Len, smlp[%d]"},
           {}};

constexpr std::array<cSMLP::Field, 1> cSMLP::Tables::aHeaderList = {
    Field::Structure(kHeaderEntry).Over(schema::kHeaderElement),
};
const cSMLP::Layout cSMLP::Tables::kHeaderList =
    Layout{aHeaderList.data(),
           0,
           {RC_HEADER_LIST_TYPE, "ListOf:ProfObjHdEntry:Wrong Type, smlp[%d]"},
           {},
           {}};

constexpr std::array<cSMLP::Field, 2> cSMLP::Tables::aValueEntry =
    Fields(schema::aValueEntry, {Shared::Value(), Shared::Signature()});
const cSMLP::Layout cSMLP::Tables::kValueEntry =
    Layout{aValueEntry.data(),
           aValueEntry.size(),
           {RC_VALUE_ENTRY_TYPE, "ValueEntry:Seq-Type, smlp[%d]"},
           {RC_VALUE_ENTRY_COUNT, "ValueEntry:Seq-Len, smlp[%d]"},
           {}};

constexpr std::array<cSMLP::Field, 1> cSMLP::Tables::aValueList = {
    Field::Structure(kValueEntry).Over(schema::kValueElement),
};
const cSMLP::Layout cSMLP::Tables::kValueList = Layout{
    aValueList.data(), 0, {RC_VALUE_LIST_TYPE, "ListOf:ValueEntry:Seq-Type, smlp[%d]"}, {}, {}};

constexpr std::array<cSMLP::Field, 4> cSMLP::Tables::aPeriodObjectEntry =
    Fields(schema::aPackPeriod,
           {
               Field::Structure(kTime),
               Field::Of(&cSMLP::ReadUntypedStatus).Refused({}, {RC_STATUS_LENGTH, nullptr}),
               Field::Structure(kValueList),
               Shared::Signature(),
           });
const cSMLP::Layout cSMLP::Tables::kPeriodObjectEntry =
    Layout{aPeriodObjectEntry.data(),
           aPeriodObjectEntry.size(),
           {RC_PER_OBJ_ENTRY_TYPE, "ProfObjPerEntry:Seq-Type, smlp[%d]"},
           {RC_PER_OBJ_ENTRY_COUNT, "ProfObjPerEntry:Seq-Len, smlp[%d]"},
           {}};

constexpr std::array<cSMLP::Field, 1> cSMLP::Tables::aPeriodObjectList = {
    Field::Structure(kPeriodObjectEntry).Over(schema::kPackPeriodElement),
};
const cSMLP::Layout cSMLP::Tables::kPeriodObjectList =
    Layout{aPeriodObjectList.data(),
           0,
           {RC_PER_OBJ_LIST_TYPE, "ListOf:ProfObjPeriodEntry:Seq-Type, smlp[%d]"},
           {},
           {}};

constexpr std::array<cSMLP::Field, 5> cSMLP::Tables::aPeriodEntry = Fields(
    schema::aPeriodEntry, {
                              Shared::ObjName().Kept(Keep::IfSet),
                              Shared::Unit().Kept(Keep::Always),
                              Shared::Scaler({RC_SCALER_TYPE, "PeriodEntry:Scaler-Type, smlp[%d]"},
                                             {RC_SCALER_LENGTH, "PeriodEntry:Scaler-Len, smlp[%d]"})
                                  .Kept(Keep::Always),
                              Shared::KeptValue(),
                              Shared::ValueSignature(),
                          });
const cSMLP::Layout cSMLP::Tables::kPeriodEntry = Layout{
    aPeriodEntry.data(),
    aPeriodEntry.size(),
    {RC_PERIOD_ENTRY_TYPE, "PeriodEntry:Seq-Type, smlp[%d]"},
    {RC_PERIOD_ENTRY_COUNT, "PeriodEntry:Seq-Len, smlp[%d]"},
    {}}.TakenBy(&cSMLP::TakeFields<aPeriodEntry>);

constexpr std::array<cSMLP::Field, 1> cSMLP::Tables::aPeriodList = {
    Field::Structure(kPeriodEntry).Kept(Keep::Always).Over(schema::kPeriodElement),
};
const cSMLP::Layout cSMLP::Tables::kPeriodList = Layout{
    aPeriodList.data(),
    0,
    {RC_PERIOD_LIST_TYPE, "ListOf:PeriodEntry:Seq-Type, smlp[%d]"},
    {},
    {}}.TakenBy(&cSMLP::TakeElements<aPeriodList>);

constexpr std::array<cSMLP::Field, 23> cSMLP::Tables::aTupelEntry =
    Fields(schema::aTupelEntry,
           {
               Field::String(),
               Field::Structure(kTime),
               Field::Number().Refused({RC_TUPEL_STATUS_TYPE, "TupelEntry:Status-Type, smlp[%d]"},
                                       {RC_TUPEL_STATUS_LENGTH, "TupelEntry:Status-Len, smlp[%d]"}),
               Shared::Unit(),
               Shared::PlainScaler(),
               Shared::Value(), // pA
               Shared::Unit(),
               Shared::PlainScaler(),
               Shared::Value(), // R1
               Shared::Unit(),
               Shared::PlainScaler(),
               Shared::Value(), // R4
               Shared::Signature(),
               Shared::Unit(),
               Shared::PlainScaler(),
               Shared::Value(), // mA
               Shared::Unit(),
               Shared::PlainScaler(),
               Shared::Value(), // R2
               Shared::Unit(),
               Shared::PlainScaler(),
               Shared::Value(), // R3
               Shared::Signature(),
           });
const cSMLP::Layout cSMLP::Tables::kTupelEntry =
    Layout{aTupelEntry.data(),
           aTupelEntry.size(),
           {RC_PROC_PAR_TYPE, "TupelEntry:Seq-Type, smlp[%d]"},
           {RC_PROC_PAR_COUNT, "TupelEntry:Seq-Len, smlp[%d]"},
           {}};
