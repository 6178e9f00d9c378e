// See kind.h.
#include "tools/reading/kind.h"

#include "quarn/quarn.h"

namespace tool
{

const MessageKind* FindKind(unsigned identifier) noexcept
{
    static constexpr MessageKind kKinds[] = {
        {SML_OPEN_REQ, "SmlOpenReq", "open request"},
        {SML_OPEN_RES, "SmlOpenRes", "open response"},
        {SML_CLOSE_REQ, "SmlCloseReq", "close request"},
        {SML_CLOSE_RES, "SmlCloseRes", "close response"},
        {SML_GET_PROFILE_PACK_REQ, "SmlGetProfileReq", "get-profile-pack request"},
        {SML_GET_PROFILE_PACK_RES, "SmlGetProfPackRes", "get-profile-pack response"},
        {SML_GET_PROFILE_LIST_REQ, "SmlGetProfileReq", "get-profile-list request"},
        {SML_GET_PROFILE_LIST_RES, "SmlGetProfListRes", "get-profile-list response"},
        {SML_GET_PROC_PAR_REQ, "SmlGetProcParReq", "get-process-parameter request"},
        {SML_GET_PROC_PAR_RES, "SmlGetProcParRes", "get-process-parameter response"},
        {SML_SET_PROC_PAR_REQ, "SmlSetProcParReq", "set-process-parameter request"},
        {SML_GET_LIST_REQ, "SmlGetListReq", "get-list request"},
        {SML_GET_LIST_RES, "SmlGetListRes", "get-list response"},
        {SML_ATTENTION_RES, "SmlAttentionRes", "attention response"},
    };
    for (const MessageKind& kind : kKinds) {
        if (kind.uiIdentifier == identifier)
            return &kind;
    }
    return nullptr;
}

} // namespace tool
