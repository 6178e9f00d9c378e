// The message bodies, as tables, and what they check.
#include "quarn/parser/take.h"

#include "quarn/foundation/messages.h"

#include <algorithm>
#include <cstring>
#include <string_view>

using namespace quarn::detail;

// The fields that several bodies have.
struct cSMLP::BodyFields {
    static constexpr Field Data(Label label, std::uint32_t max, Refusal type, Refusal length)
    {
        return Field::String(max).Refused(type, length).Kept(label, KIND_DATA, Keep::IfSet);
    }
    // A string whose refusals keep the codes of strings.
    static constexpr Field PlainData(Label label, std::uint32_t max, Keep keep = Keep::IfSet)
    {
        return Field::String(max).Kept(label, KIND_DATA, keep);
    }
    static constexpr Field ClientId()
    {
        return Data(label::clientId, SML_MAX_CLIENT_ID, {RC_CLIENT_ID_TYPE, nullptr},
                    {RC_CLIENT_ID_LENGTH, nullptr});
    }
    static constexpr Field ServerId()
    {
        return Data(label::serverId, SML_MAX_SERVER_ID, {RC_SERVER_ID_TYPE, nullptr},
                    {RC_SERVER_ID_LENGTH, nullptr})
            .Then(&cSMLP::KeepServerId);
    }
    // Of a request: optional, and told also when it is empty.
    static constexpr Field RequestServerId()
    {
        return ServerId().Optional().Kept(label::serverId, KIND_DATA, Keep::Always);
    }
    static constexpr Field Username()
    {
        return Data(label::username, 64, {RC_USERNAME_TYPE, nullptr}, {RC_USERNAME_LENGTH, nullptr})
            .Optional();
    }
    static constexpr Field Password()
    {
        return Data(label::password, 64, {RC_PASSWORD_TYPE, nullptr}, {RC_PASSWORD_LENGTH, nullptr})
            .Optional();
    }
    static constexpr Field ListName()
    {
        return Field::String(6)
            .Optional()
            .Refused({RC_LIST_NAME_TYPE, "listName:Type!, smlp[%d]"},
                     {RC_LIST_NAME_LENGTH, "listName:Len!, smlp[%d]"})
            .Kept(label::listName, KIND_UINT64, Keep::IfSet);
    }
    static constexpr Field Time(Label label, Keep keep)
    {
        return Field::Structure(Tables::kTime).Optional().Kept(label, KIND_RECORD, keep);
    }
    static constexpr Field TreePath()
    {
        return Field::Structure(Tables::kTreePath)
            .Kept(label::parTreePath, KIND_RECORD, Keep::IfSet);
    }
    static constexpr Field Tree() { return Field::Structure(Tables::kTree).Then(&cSMLP::KeepTree); }
    static constexpr Field Signature(Label label)
    {
        return PlainData(label, SML_MAX_SIGNATURE).Optional();
    }
};

struct cSMLP::Bodies : BodyFields {
    static constexpr Field aOpenReq[] = {
        Data(label::codepage, 64, {RC_CODEPAGE_TYPE, "codepage:Type!, smlp[%d]"},
             {RC_CODEPAGE_LENGTH, "codepage:Len!, smlp[%d]"})
            .Optional()
            .Then(&cSMLP::CheckCodepage),
        ClientId().Then(&cSMLP::KeepClientId),
        Data(label::reqFileId, SML_MAX_REQ_FILE_ID,
             {RC_REQ_FILE_ID_TYPE, "reqFileId:Type!, smlp[%d]"},
             {RC_REQ_FILE_ID_LENGTH, "reqFileId:Len!, smlp[%d]"})
            .Then(&cSMLP::KeepReqFileId),
        RequestServerId().Then(&cSMLP::KeepOpenServerId),
        Username(),
        Password(),
        Field::Number(TLF_UNSIGNED, 1, 1)
            .Optional()
            .Refused({RC_SML_VERSION_TYPE, nullptr}, {RC_SML_VERSION_TYPE, nullptr})
            .Kept(label::smlVersion, KIND_UINT, Keep::Always)
            .Then(&cSMLP::CheckSmlVersion),
    };
    static constexpr Field aOpenRes[] = {
        PlainData(label::codepage, 64, Keep::Always).Optional(),
        ClientId().Optional().Then(&cSMLP::KeepClientId),
        PlainData(label::reqFileId, SML_MAX_REQ_FILE_ID).Then(&cSMLP::KeepReqFileId),
        ServerId().Then(&cSMLP::KeepOpenServerId),
        Time(label::refTime, Keep::Always),
        Field::Number(TLF_UNSIGNED, 1, 1)
            .Optional()
            .Refused({RC_FIELD_TYPE, nullptr}, {RC_FIELD_TYPE, nullptr})
            .Kept(label::smlVersion, KIND_UINT, Keep::Always),
    };
    static constexpr Field aClose[] = {Signature(label::globalSignature)};
    static constexpr Field aGetProfileReq[] = {
        RequestServerId(),
        Username(),
        Password(),
        Field::Of(&cSMLP::ReadWithRawdata).Refused({RC_WITH_RAWDATA_TYPE, nullptr}, {}),
        Time(label::beginTime, Keep::Always),
        Time(label::endTime, Keep::Always),
        TreePath(),
        Field::Structure(Tables::kObjReqList)
            .Optional()
            .Kept(label::object_List, KIND_RECORD, Keep::IfSet),
        Tree().Optional(),
    };
    static constexpr Field aGetProfPackRes[] = {
        ServerId(),
        Field::Structure(Tables::kTime),
        Field::Number(TLF_UNSIGNED, 0, 8).Refused({RC_FIELD_TYPE, nullptr}, {}),
        TreePath(),
        Field::Structure(Tables::kHeaderList),
        Field::Structure(Tables::kPeriodObjectList),
        Field::String(Field::kNoLimit).Optional(),
        Field::Octets(Field::kNoLimit)
            .Optional()
            .Refused({RC_SIGNATURE_TYPE, "Signature:Seq-Type, smlp[%d]"}, {}),
    };
    static constexpr Field aGetProfListRes[] = {
        ServerId(),
        Time(label::actTime, Keep::IfSet),
        Field::Number(TLF_UNSIGNED, 0, 4)
            .Optional()
            .Refused({RC_FIELD_TYPE, nullptr}, {RC_FIELD_TYPE, nullptr})
            .Kept(label::regPeriod, KIND_UINT, Keep::Always),
        TreePath(),
        Time(label::valTime, Keep::IfSet),
        Field::Number(TLF_UNSIGNED, 0, 8)
            .Refused({RC_FIELD_TYPE, nullptr}, {})
            .Kept(label::status, KIND_UINT64, Keep::Always),
        Field::Structure(Tables::kPeriodList).Kept(label::period_List, KIND_RECORD, Keep::Always),
        PlainData(label::rawdata, SML_VALUE_CHUNK).Optional(),
        Signature(label::periodSignature),
    };
    static constexpr Field aGetProcParReq[] = {
        RequestServerId(),
        Username(),
        Password(),
        TreePath(),
        Field::String(512)
            .Optional()
            .Refused({RC_ATTRIBUTE_TYPE, nullptr}, {RC_STRING_LENGTH, nullptr})
            .Then(&cSMLP::CheckAttribute),
    };
    static constexpr Field aGetProcParRes[] = {ServerId(), TreePath(), Tree()};
    static constexpr Field aSetProcParReq[] = {RequestServerId(), Username(), Password(),
                                               TreePath(), Tree()};
    static constexpr Field aGetListReq[] = {ClientId(), RequestServerId(), Username(), Password(),
                                            ListName()};
    static constexpr Field aGetListRes[] = {
        ClientId().Optional(),
        ServerId().Then(&cSMLP::CompareServerId),
        ListName(),
        Time(label::actSensorTime, Keep::IfSet),
        Field::Structure(Tables::kList).Kept(label::valList, KIND_RECORD, Keep::Always),
        Signature(label::listSignature),
        Time(label::actGatewayTime, Keep::IfSet),
    };
    static constexpr Field aAttentionRes[] = {
        ServerId(),
        Field::String(6).Kept(label::attentionNo, KIND_UINT64, Keep::IfSet),
        PlainData(label::attentionMsg, 128).Optional(),
        Tree().Optional(),
    };

    static constexpr char kType[] = "%s:Seq-Type!, smlp[%d]";
    static constexpr char kCount[] = "%s:Seq-Cnt!, smlp[%d]";

    template <const auto& Fields>
    static constexpr Layout Body(const char* prefix)
    {
        return {Fields, std::size(Fields), {RC_BODY_TYPE, kType}, {RC_BODY_COUNT, kCount}, {},
                prefix};
    }
    // Of the messages that come in numbers: with the short way.
    template <const auto& Fields>
    static constexpr Layout TakenBody(const char* prefix)
    {
        return Body<Fields>(prefix).TakenBy(&cSMLP::TakeFields<Fields>);
    }

    struct Entry {
        unsigned uiIdentifier;
        Layout layout;
    };
    static const Entry kAll[];
};

const cSMLP::Bodies::Entry cSMLP::Bodies::kAll[] = {
    {SML_GET_LIST_RES, TakenBody<aGetListRes>("GetListResp")},
    {SML_OPEN_REQ, TakenBody<aOpenReq>("OpenReq")},
    {SML_OPEN_RES, TakenBody<aOpenRes>("OpenResp")},
    {SML_CLOSE_REQ, TakenBody<aClose>("CloseReq")},
    {SML_CLOSE_RES, TakenBody<aClose>("CloseResp")},
    {SML_GET_PROFILE_PACK_REQ, Body<aGetProfileReq>("GetProfileReq")},
    {SML_GET_PROFILE_PACK_RES, Body<aGetProfPackRes>("GetProfPackResp")},
    {SML_GET_PROFILE_LIST_REQ, Body<aGetProfileReq>("GetProfileReq")},
    {SML_GET_PROFILE_LIST_RES, TakenBody<aGetProfListRes>("GetProfListResp")},
    {SML_GET_PROC_PAR_REQ, Body<aGetProcParReq>("GetProcParReq")},
    {SML_GET_PROC_PAR_RES, Body<aGetProcParRes>("GetProcParResp")},
    {SML_SET_PROC_PAR_REQ, Body<aSetProcParReq>("SetProcParReq")},
    {SML_GET_LIST_REQ, TakenBody<aGetListReq>("GetListReq")},
    {SML_ATTENTION_RES, Body<aAttentionRes>("AttentionResp")},
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
