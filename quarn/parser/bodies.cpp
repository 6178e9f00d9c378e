// The message bodies, as tables, and what they check.
#include "quarn/parser/take.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <string_view>

using namespace quarn::detail;
namespace schema = quarn::schema;

// What several bodies add to their elements.
struct cSMLP::BodyFields {
    static constexpr Field Data(Refusal type, Refusal length)
    {
        return Field::String().Refused(type, length).Kept(Keep::IfSet);
    }
    // A string whose refusals keep the codes of strings.
    static constexpr Field PlainData(Keep keep = Keep::IfSet) { return Field::String().Kept(keep); }
    static constexpr Field ClientId()
    {
        return Data({RC_CLIENT_ID_TYPE, nullptr}, {RC_CLIENT_ID_LENGTH, nullptr});
    }
    static constexpr Field ServerId()
    {
        return Data({RC_SERVER_ID_TYPE, nullptr}, {RC_SERVER_ID_LENGTH, nullptr})
            .Then(&cSMLP::KeepServerId);
    }
    // Of a request: kept also when it is empty.
    static constexpr Field RequestServerId() { return ServerId().Kept(Keep::Always); }
    static constexpr Field Username()
    {
        return Data({RC_USERNAME_TYPE, nullptr}, {RC_USERNAME_LENGTH, nullptr});
    }
    static constexpr Field Password()
    {
        return Data({RC_PASSWORD_TYPE, nullptr}, {RC_PASSWORD_LENGTH, nullptr});
    }
    static constexpr Field ListName()
    {
        return Data({RC_LIST_NAME_TYPE, "listName:Type!, smlp[%d]"},
                    {RC_LIST_NAME_LENGTH, "listName:Len!, smlp[%d]"});
    }
    static constexpr Field Time(Keep keep) { return Field::Structure(Tables::kTime).Kept(keep); }

    static constexpr Field OctetsOf(const schema::Element& element)
    {
        if (element.label == label::clientId)
            return ClientId();
        if (element.label == label::serverId)
            return element.bOptional ? RequestServerId() : ServerId();
        if (element.label == label::username)
            return Username();
        if (element.label == label::password)
            return Password();
        return element.label == label::listName ? ListName() : PlainData();
    }
    static constexpr Field StructureOf(const schema::Structure* structure)
    {
        if (structure == &schema::kTime)
            return Time(Keep::IfSet);
        if (structure == &schema::kTreePath)
            return Field::Structure(Tables::kTreePath).Kept(Keep::IfSet);
        if (structure == &schema::Tree::kNode)
            return Field::Structure(Tables::kTree).Then(&cSMLP::KeepTree);
        if (structure == &schema::kObjectList)
            return Field::Structure(Tables::kObjReqList).Kept(Keep::IfSet);
        if (structure == &schema::kList)
            return Field::Structure(Tables::kList).Kept(Keep::Always);
        if (structure == &schema::kPeriodList)
            return Field::Structure(Tables::kPeriodList).Kept(Keep::Always);
        if (structure == &schema::kHeaderList)
            return Field::Structure(Tables::kHeaderList);
        if (structure == &schema::kPackPeriodList)
            return Field::Structure(Tables::kPeriodObjectList);
        throw "a structure that the parser does not know";
    }
    // What is added to an element unless its body says otherwise.
    static constexpr Field Usual(const schema::Element& element)
    {
        if (element.eType == schema::eTYPE::OCTETS)
            return OctetsOf(element);
        if (element.eType == schema::eTYPE::UNSIGNED)
            return Field::Number()
                .Refused({RC_FIELD_TYPE, nullptr}, {RC_FIELD_TYPE, nullptr})
                .Kept(Keep::Always);
        return StructureOf(element.pStructure);
    }

    // What a body adds to the element of that label.
    struct Row {
        std::string_view label;
        Field field;
    };

    template <std::size_t N>
    static constexpr std::array<Field, N> Fields(const schema::Element (&elements)[N],
                                                 std::initializer_list<Row> rows = {})
    {
        std::array<Field, N> fields{};
        std::size_t used = 0;
        for (std::size_t i = 0; i < N; ++i) {
            bool usual = true;
            for (const Row& row : rows) {
                if (row.label != elements[i].label)
                    continue;
                fields[i] = row.field.Over(elements[i]);
                usual = false;
                ++used;
            }
            if (usual)
                fields[i] = Usual(elements[i]).Over(elements[i]);
        }
        if (used != rows.size())
            throw "a row for no element";
        return fields;
    }
};

struct cSMLP::Bodies : BodyFields {
    static constexpr auto aOpenReq =
        Fields(schema::aOpenReq,
               {
                   {label::codepage, Data({RC_CODEPAGE_TYPE, "codepage:Type!, smlp[%d]"},
                                          {RC_CODEPAGE_LENGTH, "codepage:Len!, smlp[%d]"})
                                         .Then(&cSMLP::CheckCodepage)},
                   {label::clientId, ClientId().Then(&cSMLP::KeepClientId)},
                   {label::reqFileId, Data({RC_REQ_FILE_ID_TYPE, "reqFileId:Type!, smlp[%d]"},
                                           {RC_REQ_FILE_ID_LENGTH, "reqFileId:Len!, smlp[%d]"})
                                          .Then(&cSMLP::KeepReqFileId)},
                   {label::serverId, RequestServerId().Then(&cSMLP::KeepOpenServerId)},
                   {label::smlVersion,
                    Field::Number()
                        .Refused({RC_SML_VERSION_TYPE, nullptr}, {RC_SML_VERSION_TYPE, nullptr})
                        .Kept(Keep::Always)
                        .Then(&cSMLP::CheckSmlVersion)},
               });
    static constexpr auto aOpenRes =
        Fields(schema::aOpenRes, {
                                     {label::codepage, PlainData(Keep::Always)},
                                     {label::clientId, ClientId().Then(&cSMLP::KeepClientId)},
                                     {label::reqFileId, PlainData().Then(&cSMLP::KeepReqFileId)},
                                     {label::serverId, ServerId().Then(&cSMLP::KeepOpenServerId)},
                                     {label::refTime, Time(Keep::Always)},
                                 });
    static constexpr auto aClose = Fields(schema::aClose);
    static constexpr auto aGetProfileReq = Fields(
        schema::aGetProfileReq,
        {
            {label::withRawdata,
             Field::Of(&cSMLP::ReadWithRawdata).Refused({RC_WITH_RAWDATA_TYPE, nullptr}, {})},
            {label::beginTime, Time(Keep::Always)},
            {label::endTime, Time(Keep::Always)},
        });
    // Of a profile pack only the server and the path are kept.
    static constexpr auto aGetProfPackRes = Fields(
        schema::aGetProfPackRes,
        {
            {label::actTime, Field::Structure(Tables::kTime)},
            {label::regPeriod, Field::Number().UpTo(8).Refused({RC_FIELD_TYPE, nullptr}, {})},
            {label::rawdata, Field::String()},
            {label::profileSignature,
             Field::Octets().Refused({RC_SIGNATURE_TYPE, "Signature:Seq-Type, smlp[%d]"}, {})},
        });
    static constexpr auto aGetProfListRes = Fields(schema::aGetProfListRes);
    static constexpr auto aGetProcParReq =
        Fields(schema::aGetProcParReq,
               {
                   {label::attribute,
                    Field::String()
                        .Refused({RC_ATTRIBUTE_TYPE, nullptr}, {RC_STRING_LENGTH, nullptr})
                        .Then(&cSMLP::CheckAttribute)},
               });
    static constexpr auto aGetProcParRes = Fields(schema::aGetProcParRes);
    static constexpr auto aSetProcParReq = Fields(schema::aSetProcParReq);
    static constexpr auto aGetListReq = Fields(schema::aGetListReq);
    static constexpr auto aGetListRes =
        Fields(schema::aGetListRes, {{label::serverId, ServerId().Then(&cSMLP::CompareServerId)}});
    static constexpr auto aAttentionRes = Fields(schema::aAttentionRes);

    static constexpr char kType[] = "%s:Seq-Type!, smlp[%d]";
    static constexpr char kCount[] = "%s:Seq-Cnt!, smlp[%d]";

    struct Entry {
        unsigned uiIdentifier;
        Layout layout;
    };

    template <const auto& Fields>
    static constexpr Entry Body(unsigned identifier, const char* prefix,
                                Layout::Taker taker = nullptr)
    {
        return {identifier,
                {Fields.data(),
                 Fields.size(),
                 {RC_BODY_TYPE, kType},
                 {RC_BODY_COUNT, kCount},
                 {},
                 prefix,
                 nullptr,
                 nullptr,
                 taker,
                 Label(schema::FindMessage(identifier)->label)}};
    }
    // Of the messages that come in numbers: with the short way.
    template <const auto& Fields>
    static constexpr Entry TakenBody(unsigned identifier, const char* prefix)
    {
        return Body<Fields>(identifier, prefix, &cSMLP::TakeFields<Fields>);
    }

    static const std::array<Entry, std::size(schema::kMessages)> kAll;
};

// The most frequent one first.
constexpr std::array<cSMLP::Bodies::Entry, std::size(schema::kMessages)> cSMLP::Bodies::kAll = {
    TakenBody<aGetListRes>(SML_GET_LIST_RES, "GetListResp"),
    TakenBody<aOpenReq>(SML_OPEN_REQ, "OpenReq"),
    TakenBody<aOpenRes>(SML_OPEN_RES, "OpenResp"),
    TakenBody<aClose>(SML_CLOSE_REQ, "CloseReq"),
    TakenBody<aClose>(SML_CLOSE_RES, "CloseResp"),
    Body<aGetProfileReq>(SML_GET_PROFILE_PACK_REQ, "GetProfileReq"),
    Body<aGetProfPackRes>(SML_GET_PROFILE_PACK_RES, "GetProfPackResp"),
    Body<aGetProfileReq>(SML_GET_PROFILE_LIST_REQ, "GetProfileReq"),
    TakenBody<aGetProfListRes>(SML_GET_PROFILE_LIST_RES, "GetProfListResp"),
    Body<aGetProcParReq>(SML_GET_PROC_PAR_REQ, "GetProcParReq"),
    Body<aGetProcParRes>(SML_GET_PROC_PAR_RES, "GetProcParResp"),
    Body<aSetProcParReq>(SML_SET_PROC_PAR_REQ, "SetProcParReq"),
    TakenBody<aGetListReq>(SML_GET_LIST_REQ, "GetListReq"),
    Body<aAttentionRes>(SML_ATTENTION_RES, "AttentionResp"),
};

const cSMLP::Layout* cSMLP::Tables::FindBody(std::uint32_t identifier) noexcept
{
    for (const Bodies::Entry& entry : Bodies::kAll) {
        if (entry.uiIdentifier == identifier)
            return &entry.layout;
    }
    return nullptr;
}

// ---- What the bodies check and keep. The open data belong to the file: they are kept only while
// no open message of it has been accepted.

int cSMLP::CheckCodepage()
{
    constexpr std::string_view expected = "ISO 8859-15";
    if (uiStringLen == 0)
        return RC_DONE;
    const bool good = uiStringLen >= expected.size() &&
                      std::memcmp(pucString, expected.data(), expected.size()) == 0;
    return good ? RC_DONE : RC_CODEPAGE;
}

int cSMLP::CheckAttribute() { return uiTLF_Type == TLF_ABSENT ? RC_DONE : RC_NOT_OPTIONAL; }

int cSMLP::CheckSmlVersion()
{
    if (ullInteger <= 1)
        return RC_DONE;
    return Refuse({RC_SML_VERSION, "OpenReq:Sml-Version=%d!, smlp[%d]"},
                  static_cast<std::uint32_t>(ullInteger));
}

int cSMLP::KeepClientId()
{
    if (!bFileOpen)
        openClientId.Set(pucString, uiStringLen);
    return RC_DONE;
}

// With it, a request's header is taken for the file's; a response's only with its server id.
int cSMLP::KeepReqFileId()
{
    if (!bFileOpen) {
        openReqFileId.Set(pucString, uiStringLen);
        if (uiMsgIdentifier == SML_OPEN_REQ)
            KeepOpenHeader();
    }
    return RC_DONE;
}

void cSMLP::KeepOpenHeader() noexcept
{
    openTransactionId = transactionId;
    ucOpenGroupNo = ucGroupNo;
    ucOpenAbortOnError = ucAbortOnError;
}

int cSMLP::KeepServerId()
{
    msgServerId.Set(pucString, uiStringLen);
    return RC_DONE;
}

int cSMLP::KeepOpenServerId()
{
    if (!bFileOpen) {
        openServerId.Set(pucString, uiStringLen);
        KeepOpenHeader();
    }
    return KeepServerId();
}

int cSMLP::CompareServerId()
{
    KeepServerId();
    if (openServerId.uiLen == 0 || !Traces(LibSmlp, kAnomaly))
        return RC_DONE;
    for (std::uint32_t i = 0; i < uiStringLen; ++i) {
        const auto open =
            static_cast<unsigned char>(i < openServerId.uiLen ? openServerId.acData[i] : '\0');
        if (open == pucString[i])
            continue;
        Say(kAnomaly,
            "GetListResp:ServerId DIFF!, OSrvId:0x%02x, SrvId:0x%02x, Index:0x%04x, smlp[%d]", open,
            pucString[i], i);
        Trace(LibSmlp, kAnomaly, "rec_SmlGetListRes= %s\n", Body().ToString().c_str());
    }
    return RC_DONE;
}
