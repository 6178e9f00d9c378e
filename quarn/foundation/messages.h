// The SML messages that the library knows: each one's identifier (the tag of its body) and the
// label under which its body stands in a message record. An odd identifier is a response.
#ifndef QUARN_FOUNDATION_MESSAGES_H
#define QUARN_FOUNDATION_MESSAGES_H

#include "quarn/foundation/labels.h"
#include "quarn/foundation/record_builder.h"

enum eSML_MSG : unsigned {
    SML_OPEN_REQ = 0x0100,
    SML_OPEN_RES = 0x0101,
    SML_CLOSE_REQ = 0x0200,
    SML_CLOSE_RES = 0x0201,
    SML_GET_PROFILE_PACK_REQ = 0x0300,
    SML_GET_PROFILE_PACK_RES = 0x0301,
    SML_GET_PROFILE_LIST_REQ = 0x0400,
    SML_GET_PROFILE_LIST_RES = 0x0401,
    SML_GET_PROC_PAR_REQ = 0x0500,
    SML_GET_PROC_PAR_RES = 0x0501,
    SML_SET_PROC_PAR_REQ = 0x0600,
    SML_GET_LIST_REQ = 0x0700,
    SML_GET_LIST_RES = 0x0701,
    SML_ATTENTION_RES = 0xFF01
};

namespace quarn::detail
{

struct MessageKind {
    unsigned uiIdentifier;
    Label bodyLabel;
};

// Both profile requests share one body layout and one label.
inline constexpr MessageKind kMessageKinds[] = {
    {SML_OPEN_REQ, label::SmlOpenReq},
    {SML_OPEN_RES, label::SmlOpenRes},
    {SML_CLOSE_REQ, label::SmlCloseReq},
    {SML_CLOSE_RES, label::SmlCloseRes},
    {SML_GET_PROFILE_PACK_REQ, label::SmlGetProfileReq},
    {SML_GET_PROFILE_PACK_RES, label::SmlGetProfPackRes},
    {SML_GET_PROFILE_LIST_REQ, label::SmlGetProfileReq},
    {SML_GET_PROFILE_LIST_RES, label::SmlGetProfListRes},
    {SML_GET_PROC_PAR_REQ, label::SmlGetProcParReq},
    {SML_GET_PROC_PAR_RES, label::SmlGetProcParRes},
    {SML_SET_PROC_PAR_REQ, label::SmlSetProcParReq},
    {SML_GET_LIST_REQ, label::SmlGetListReq},
    {SML_GET_LIST_RES, label::SmlGetListRes},
    {SML_ATTENTION_RES, label::SmlAttentionRes},
};

// Null for an identifier that the library does not know.
constexpr const MessageKind* FindMessageKind(unsigned identifier)
{
    for (const MessageKind& kind : kMessageKinds) {
        if (kind.uiIdentifier == identifier)
            return &kind;
    }
    return nullptr;
}

constexpr bool IsOpenMessage(unsigned identifier)
{
    return identifier == SML_OPEN_REQ || identifier == SML_OPEN_RES;
}

constexpr bool IsCloseMessage(unsigned identifier)
{
    return identifier == SML_CLOSE_REQ || identifier == SML_CLOSE_RES;
}

} // namespace quarn::detail

#endif
