// See grammar.h. A field is written name:kind or name=Rule, with ? behind it when it need not be
// set, and in a choice with its tag and / before it. Names are the labels of records, so that a
// field is found again there.
#include "tools/explain/grammar.h"

#include <iterator>

namespace tool
{
namespace
{

// In the order of eFIELD; the first letter of a kind is its own.
constexpr std::string_view kKinds[] = {"octets",     "name",   "attention", "number", "seconds",
                                       "timestamp",  "unit",   "status",    "tag",    "crc",
                                       "offset",     "scaler", "boolean",   "=",      "value",
                                       "any-status", "end"};

#define KEYS "serverId:octets? username:octets? password:octets? "
#define TRIPLE(of) "unit_" of ":unit scaler_" of ":scaler value_" of ":value? "

constexpr Rule kRules[] = {
    {"Message", eSHAPE::SEQUENCE,
     "transactionId:octets groupNo:number abortOnError:number messageBody=Body crc16:crc "
     "endOfSmlMsg:end"},
    {"Body", eSHAPE::CHOICE,
     "0100/SmlOpenReq=OpenReq 0101/SmlOpenRes=OpenRes 0200/SmlCloseReq=Close "
     "0201/SmlCloseRes=Close 0300/SmlGetProfileReq=ProfileReq "
     "0301/SmlGetProfPackRes=ProfilePackRes 0400/SmlGetProfileReq=ProfileReq "
     "0401/SmlGetProfListRes=ProfileListRes 0500/SmlGetProcParReq=ProcParReq "
     "0501/SmlGetProcParRes=ProcParRes 0600/SmlSetProcParReq=SetProcParReq "
     "0700/SmlGetListReq=ListReq 0701/SmlGetListRes=ListRes FF01/SmlAttentionRes=AttentionRes"},
    // Bodies
    {"OpenReq", eSHAPE::SEQUENCE,
     "codepage:octets? clientId:octets reqFileId:octets " KEYS "smlVersion:number?"},
    {"OpenRes", eSHAPE::SEQUENCE,
     "codepage:octets? clientId:octets? reqFileId:octets serverId:octets refTime=Time? "
     "smlVersion:number?"},
    {"Close", eSHAPE::SEQUENCE, "globalSignature:octets?"},
    {"ProfileReq", eSHAPE::SEQUENCE,
     KEYS "withRawdata:boolean? beginTime=Time? endTime=Time? parTreePath=Path "
          "object_List=Objects? parTree=Tree?"},
    {"ProfilePackRes", eSHAPE::SEQUENCE,
     "serverId:octets actTime=Time regPeriod:number parTreePath=Path header_List=HeaderList "
     "period_List=PackPeriodList rawdata:octets? profileSignature:octets?"},
    {"ProfileListRes", eSHAPE::SEQUENCE,
     "serverId:octets actTime=Time? regPeriod:number? parTreePath=Path valTime=Time? "
     "status:status period_List=PeriodList rawdata:octets? periodSignature:octets?"},
    {"ProcParReq", eSHAPE::SEQUENCE, KEYS "parTreePath=Path attribute:octets?"},
    {"ProcParRes", eSHAPE::SEQUENCE, "serverId:octets parTreePath=Path parTree=Tree"},
    {"SetProcParReq", eSHAPE::SEQUENCE, KEYS "parTreePath=Path parTree=Tree"},
    {"ListReq", eSHAPE::SEQUENCE, "clientId:octets " KEYS "listName:name?"},
    {"ListRes", eSHAPE::SEQUENCE,
     "clientId:octets? serverId:octets listName:name? actSensorTime=Time? valList=ValList "
     "listSignature:octets? actGatewayTime=Time?"},
    {"AttentionRes", eSHAPE::SEQUENCE,
     "serverId:octets attentionNo:attention attentionMsg:octets? parTree=Tree?"},
    // Entries and their lists
    {"ValList", eSHAPE::LIST, "valListEntry=ListEntry"},
    {"ListEntry", eSHAPE::SEQUENCE,
     "objName:name status:status? valTime=Time? unit:unit? scaler:scaler? value:value? "
     "valueSignature:octets?"},
    {"PeriodList", eSHAPE::LIST, "SmlPeriodEntry=PeriodEntry"},
    {"PeriodEntry", eSHAPE::SEQUENCE,
     "objName:name unit:unit scaler:scaler value:value? valueSignature:octets?"},
    {"HeaderList", eSHAPE::LIST, "pObjHdEntry=HeaderEntry"},
    {"HeaderEntry", eSHAPE::SEQUENCE, "objName:name unit:unit scaler:scaler"},
    {"PackPeriodList", eSHAPE::LIST, "pObjPerEntry=PackPeriod"},
    {"PackPeriod", eSHAPE::SEQUENCE,
     "valTime=Time status:any-status? value_List=ValueList periodSignature:octets?"},
    {"ValueList", eSHAPE::LIST, "value_List_Entry=ValueEntry"},
    {"ValueEntry", eSHAPE::SEQUENCE, "value:value? valueSignature:octets?"},
    {"Tupel", eSHAPE::SEQUENCE,
     "serverId:octets? secIndex=Time status:status " TRIPLE("pA") TRIPLE("R1")
         TRIPLE("R4") "signature_pA_R1_R4:octets? " TRIPLE("mA") TRIPLE("R2")
             TRIPLE("R3") "signature_mA_R2_R3:octets?"},
    {"Objects", eSHAPE::LIST, "object_List_Entry:name"},
    // Times
    {"Time", eSHAPE::CHOICE, "1/seconds_index:seconds 2/timestamp:timestamp 3/local=LocalTime"},
    {"LocalTime", eSHAPE::SEQUENCE, "timestamp:timestamp locOffset:offset seaOffset:offset"},
    {"ListType", eSHAPE::CHOICE, "1/SmlTime=Time"},
    // Trees
    {"Path", eSHAPE::LIST, "path_Entry:name"},
    {"Tree", eSHAPE::SEQUENCE, "parName:name procParVal=TreeValue? child_List=Children?"},
    {"Children", eSHAPE::LIST, "parTree=Tree?"},
    {"TreeValue", eSHAPE::CHOICE,
     "1/value:value? 2/SmlPeriodEntry=PeriodEntry 3/SmlTupelEntry=Tupel 4/SmlTime=Time "
     "5/valListEntry=ListEntry"},
};

#undef KEYS
#undef TRIPLE

constexpr const Rule* FindRule(std::string_view name) noexcept
{
    for (const Rule& rule : kRules) {
        if (rule.name == name)
            return &rule;
    }
    return nullptr;
}

constexpr unsigned HexNumber(std::string_view text) noexcept
{
    unsigned number = 0;
    for (const char c : text)
        number = number << 4U | static_cast<unsigned>(c <= '9' ? c - '0' : c - 'A' + 10);
    return number;
}

constexpr bool Take(std::string_view& fields, Field& field) noexcept
{
    if (fields.empty())
        return false;
    std::string_view text = fields.substr(0, fields.find(' '));
    fields.remove_prefix(text.size() == fields.size() ? text.size() : text.size() + 1);
    field = Field();
    const std::size_t tag = text.find('/');
    if (tag != std::string_view::npos) {
        field.uiTag = HexNumber(text.substr(0, tag));
        text.remove_prefix(tag + 1);
    }
    field.bOptional = text.back() == '?';
    text.remove_suffix(field.bOptional ? 1 : 0);
    const std::size_t end = text.find_first_of(":=");
    field.name = text.substr(0, end);
    const std::string_view kind = text.substr(end + 1);
    if (text[end] == '=') {
        field.eKind = eFIELD::SHAPE;
        field.pRule = FindRule(kind);
        return true;
    }
    for (std::size_t i = 0; i < std::size(kKinds); ++i) {
        if (kKinds[i] == kind)
            field.eKind = static_cast<eFIELD>(i);
    }
    if (field.eKind == eFIELD::VALUE)
        field.pRule = FindRule("ListType");
    return true;
}

constexpr bool IsSound()
{
    for (const Rule& rule : kRules) {
        std::string_view fields = rule.fields;
        Field field;
        while (Take(fields, field)) {
            if (field.eKind == eFIELD::ANY ||
                (field.eKind == eFIELD::SHAPE && field.pRule == nullptr))
                return false;
        }
    }
    return true;
}
static_assert(IsSound(), "every field is of a kind, or follows a rule, that there is");

} // namespace

bool TakeField(std::string_view& fields, Field& field) noexcept { return Take(fields, field); }

const Rule& kMessageRule = kRules[0];

} // namespace tool
