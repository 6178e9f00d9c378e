// What SML messages look like, on the wire and in records. A field is defined here and nowhere
// else: parser, encoder, record classes and hosts that print, read or make messages take it from
// here and add what is theirs.
//
// A structure is a sequence of elements, a list of elements that are all alike, or a choice:
//
//   sequence   7n  element element ...     n elements, each with a meaning of its own
//   list       7n  element element ...     n elements
//   choice     72  62 tag  element         the tag says which element follows
//
// An element that is not set is written as 01. In a record a sequence is a record with one
// parameter for each element that is set, in this order, under the element's label; a list is a
// record whose parameters are all called as its element.
#ifndef QUARN_FOUNDATION_SCHEMA_H
#define QUARN_FOUNDATION_SCHEMA_H

#include "quarn/foundation/labels.h"
#include "quarn/foundation/limits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

// The tags of message bodies. An odd one is a response.
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

namespace quarn
{

// Kinds of parameters in a record, as GetType(1) returns them.
enum eKIND : int {
    KIND_SINT = 2,
    KIND_UINT = 3,
    KIND_DATA = 5,
    KIND_RECORD = 6,
    KIND_SINT64 = 8,
    KIND_UINT64 = 9,
    KIND_BOOL = 10
};

namespace detail
{
using quarn::KIND_SINT, quarn::KIND_UINT, quarn::KIND_DATA, quarn::KIND_RECORD, quarn::KIND_SINT64,
    quarn::KIND_UINT64, quarn::KIND_BOOL, quarn::eKIND;
}

} // namespace quarn

namespace quarn::schema
{

enum class eTYPE : std::uint8_t {
    OCTETS,
    BOOLEAN,
    INTEGER, // signed
    UNSIGNED,
    VALUE,     // a boolean, an integer, octets, or the choice of a list type
    STRUCTURE, // a sequence, list or choice
    ANY,       // as many bytes as its length says, whatever its type; passed over
    CRC,       // of the message: one or two bytes
    END        // of the message: the byte 00, without a type-length field
};

// What a field means beyond its type.
enum class eMEANING : std::uint8_t {
    PLAIN,
    NAME,      // six octets: the code of an object or the name of a parameter
    ATTENTION, // six octets: the number of an attention response
    UNIT,      // code of a unit
    SCALER,    // power of ten
    STATUS,    // bits of a meter's state
    SECONDS,   // since the meter's start
    TIMESTAMP, // seconds since 1970, UTC
    OFFSET,    // to UTC, in minutes
    SIGNATURE,
    TAG // of a choice
};

enum class eFORM : std::uint8_t { SEQUENCE, LIST, CHOICE };

struct Structure;

inline constexpr std::uint32_t kNoLimit = 0xFFFFFFFF;

struct Element {
    std::string_view label; // in a record; a 0 follows it
    eTYPE eType = eTYPE::OCTETS;
    eMEANING eMeaning = eMEANING::PLAIN;
    bool bOptional = false;   // it may be not set
    std::uint32_t uiMost = 0; // bytes of octets, or of a number; a number of 1 has that one
    const Structure* pStructure = nullptr; // of STRUCTURE and, where it is no plain one, of VALUE
    unsigned uiTag = 0;                    // that selects it in a choice

    // The least bytes that it has when it is set.
    constexpr std::uint32_t Least() const { return IsNumber() && uiMost == 1 ? 1 : 0; }
    constexpr bool IsNumber() const
    {
        return eType == eTYPE::INTEGER || eType == eTYPE::UNSIGNED || eType == eTYPE::BOOLEAN;
    }
    // A name or an attention number: in a record a number whose bits 47 to 40 are its first octet.
    constexpr bool IsName() const
    {
        return eMeaning == eMEANING::NAME || eMeaning == eMEANING::ATTENTION;
    }
};

// The kind of parameter that an element is in a record; of a VALUE the kind says what it is, and
// here it is that of its list type.
constexpr eKIND KindOf(const Element& element)
{
    switch (element.eType) {
    case eTYPE::OCTETS:
        return element.IsName() ? KIND_UINT64 : KIND_DATA;
    case eTYPE::BOOLEAN:
        return KIND_BOOL;
    case eTYPE::INTEGER:
        return KIND_SINT;
    case eTYPE::UNSIGNED:
    case eTYPE::ANY:
    case eTYPE::CRC:
    case eTYPE::END:
        return element.uiMost > 4 ? KIND_UINT64 : KIND_UINT;
    default:
        return KIND_RECORD;
    }
}

struct Structure {
    eFORM eForm;
    const Element* pElements; // of a list: the one that its elements have
    std::size_t uiCount;

    constexpr const Element* begin() const { return pElements; }
    constexpr const Element* end() const { return pElements + uiCount; }
    constexpr const Element& operator[](std::size_t i) const { return pElements[i]; }
    constexpr bool IsList() const { return eForm == eFORM::LIST; }
};

struct Message {
    unsigned uiTag;         // one of eSML_MSG
    std::string_view label; // of its body in a message record
    const char* pcName;     // for people
    const Structure& body;
};

// ---- How elements are written

constexpr Element Octets(std::string_view label, std::uint32_t most = kNoLimit)
{
    return {label, eTYPE::OCTETS, eMEANING::PLAIN, false, most};
}
constexpr Element Name(std::string_view label, std::uint32_t most = SML_NAME_SIZE)
{
    return {label, eTYPE::OCTETS, eMEANING::NAME, false, most};
}
constexpr Element Unsigned(std::string_view label, std::uint32_t bytes,
                           eMEANING meaning = eMEANING::PLAIN)
{
    return {label, eTYPE::UNSIGNED, meaning, false, bytes};
}
constexpr Element Integer(std::string_view label, std::uint32_t bytes,
                          eMEANING meaning = eMEANING::PLAIN)
{
    return {label, eTYPE::INTEGER, meaning, false, bytes};
}
constexpr Element Boolean(std::string_view label)
{
    return {label, eTYPE::BOOLEAN, eMEANING::PLAIN, false, 4};
}
constexpr Element Of(const Structure& structure, std::string_view label)
{
    return {label, eTYPE::STRUCTURE, eMEANING::PLAIN, false, 0, &structure};
}
// The tag of a choice, as a record has it.
constexpr Element Tag() { return Unsigned(label::type, 1, eMEANING::TAG); }
constexpr Element Optional(Element field)
{
    field.bOptional = true;
    return field;
}
constexpr Element Tagged(unsigned tag, Element field)
{
    field.uiTag = tag;
    return field;
}

template <std::size_t N>
constexpr Structure Sequence(const Element (&elements)[N])
{
    return {eFORM::SEQUENCE, elements, N};
}
template <std::size_t N>
constexpr Structure Choice(const Element (&elements)[N])
{
    return {eFORM::CHOICE, elements, N};
}
constexpr Structure ListOf(const Element& element) { return {eFORM::LIST, &element, 1}; }

// ---- Times and values

inline constexpr Element aLocalTime[] = {
    Unsigned(label::value, 4, eMEANING::TIMESTAMP),
    Integer(label::locOffset, 2, eMEANING::OFFSET),
    Integer(label::seaOffset, 2, eMEANING::OFFSET),
};
inline constexpr Structure kLocalTime = Sequence(aLocalTime);

// In a record: "type" is the tag, and what the tag selects stands beside it.
inline constexpr Element aTime[] = {
    Tagged(1, Unsigned(label::value, 4, eMEANING::SECONDS)),
    Tagged(2, Unsigned(label::value, 4, eMEANING::TIMESTAMP)),
    Tagged(3, Of(kLocalTime, label::value)),
};
inline constexpr Structure kTime = Choice(aTime);

inline constexpr Element aListType[] = {Tagged(1, Of(kTime, label::SmlTime))};
inline constexpr Structure kListType = Choice(aListType);

constexpr Element Value(std::string_view label)
{
    return {label, eTYPE::VALUE, eMEANING::PLAIN, true, SML_VALUE_CHUNK, &kListType};
}
constexpr Element Unit(std::string_view label) { return Unsigned(label, 1, eMEANING::UNIT); }
constexpr Element Scaler(std::string_view label) { return Integer(label, 1, eMEANING::SCALER); }
constexpr Element Status(std::string_view label) { return Unsigned(label, 8, eMEANING::STATUS); }
constexpr Element Signature(std::string_view label, std::uint32_t most = SML_MAX_SIGNATURE)
{
    return {label, eTYPE::OCTETS, eMEANING::SIGNATURE, true, most};
}

// ---- Entries and their lists

inline constexpr Element aListEntry[] = {
    Name(label::objName, SML_MAX_OBJ_NAME), Optional(Status(label::status)),
    Optional(Of(kTime, label::valTime)),    Optional(Unit(label::unit)),
    Optional(Scaler(label::scaler)),        Value(label::value),
    Signature(label::valueSignature),
};
inline constexpr Structure kListEntry = Sequence(aListEntry);
inline constexpr Element kListElement = Of(kListEntry, label::valListEntry);
inline constexpr Structure kList = ListOf(kListElement);

inline constexpr Element aPeriodEntry[] = {
    Name(label::objName, SML_MAX_OBJ_NAME),
    Unit(label::unit),
    Scaler(label::scaler),
    Value(label::value),
    Signature(label::valueSignature),
};
inline constexpr Structure kPeriodEntry = Sequence(aPeriodEntry);
inline constexpr Element kPeriodElement = Of(kPeriodEntry, label::SmlPeriodEntry);
inline constexpr Structure kPeriodList = ListOf(kPeriodElement);

inline constexpr Element aHeaderEntry[] = {Name(label::objName, kNoLimit), Unit(label::unit),
                                           Scaler(label::scaler)};
inline constexpr Structure kHeaderEntry = Sequence(aHeaderEntry);
inline constexpr Element kHeaderElement = Of(kHeaderEntry, label::pObjHdEntry);
inline constexpr Structure kHeaderList = ListOf(kHeaderElement);

inline constexpr Element aValueEntry[] = {Value(label::value),
                                          Signature(label::valueSignature, kNoLimit)};
inline constexpr Structure kValueEntry = Sequence(aValueEntry);
inline constexpr Element kValueElement = Of(kValueEntry, label::value_List_Entry);
inline constexpr Structure kValueList = ListOf(kValueElement);

inline constexpr Element aPackPeriod[] = {
    Of(kTime, label::valTime),
    {label::status, eTYPE::ANY, eMEANING::STATUS, true, 8},
    Of(kValueList, label::value_List),
    Signature(label::periodSignature, kNoLimit),
};
inline constexpr Structure kPackPeriod = Sequence(aPackPeriod);
inline constexpr Element kPackPeriodElement = Of(kPackPeriod, label::pObjPerEntry);
inline constexpr Structure kPackPeriodList = ListOf(kPackPeriodElement);

inline constexpr Element aTupelEntry[] = {
    Optional(Octets(label::serverId, SML_MAX_SERVER_ID)),
    Of(kTime, label::secIndex),
    Status(label::status),
    Unit(label::unit_pA),
    Scaler(label::scaler_pA),
    Value(label::value_pA),
    Unit(label::unit_R1),
    Scaler(label::scaler_R1),
    Value(label::value_R1),
    Unit(label::unit_R4),
    Scaler(label::scaler_R4),
    Value(label::value_R4),
    Signature(label::signature_pA_R1_R4, kNoLimit),
    Unit(label::unit_mA),
    Scaler(label::scaler_mA),
    Value(label::value_mA),
    Unit(label::unit_R2),
    Scaler(label::scaler_R2),
    Value(label::value_R2),
    Unit(label::unit_R3),
    Scaler(label::scaler_R3),
    Value(label::value_R3),
    Signature(label::signature_mA_R2_R3, kNoLimit),
};
inline constexpr Structure kTupelEntry = Sequence(aTupelEntry);

inline constexpr Element kObjectElement = Name(label::object_List_Entry, SML_MAX_OBJ_NAME);
inline constexpr Structure kObjectList = ListOf(kObjectElement);

// ---- Parameter trees

inline constexpr Element kPathElement = Name(label::path_Entry);
inline constexpr Structure kTreePath = ListOf(kPathElement);

// In a record: "type" is the tag, and "value" what it selects, in a record of its own under the
// label given here but for a plain value.
inline constexpr Element aProcParValue[] = {
    Tagged(1, Value(label::value)),
    Tagged(2, Of(kPeriodEntry, label::SmlPeriodEntry)),
    Tagged(3, Of(kTupelEntry, label::SmlTupelEntry)),
    Tagged(4, Of(kTime, label::SmlTime)),
    Tagged(5, Of(kListEntry, label::valListEntry)),
};
inline constexpr Structure kProcParValue = Choice(aProcParValue);

// A node holds a list of nodes.
struct Tree {
    static const Structure kNode;
    static const Structure kChildren;
};
inline constexpr Element aTree[] = {
    Name(label::parName),
    Optional(Of(kProcParValue, label::procParVal)),
    Optional(Of(Tree::kChildren, label::child_List)),
};
inline constexpr Structure Tree::kNode = Sequence(aTree);
inline constexpr Element kTreeElement = Optional(Of(Tree::kNode, label::parTree));
inline constexpr Structure Tree::kChildren = ListOf(kTreeElement);

// ---- Message bodies

constexpr Element ClientId() { return Octets(label::clientId, SML_MAX_CLIENT_ID); }
constexpr Element ReqFileId() { return Octets(label::reqFileId, SML_MAX_REQ_FILE_ID); }
constexpr Element ServerId() { return Octets(label::serverId, SML_MAX_SERVER_ID); }
constexpr Element Codepage() { return Optional(Octets(label::codepage, SML_MAX_CODEPAGE)); }
constexpr Element Username() { return Optional(Octets(label::username, SML_MAX_USERNAME)); }
constexpr Element Password() { return Optional(Octets(label::password, SML_MAX_PASSWORD)); }
constexpr Element SmlVersion() { return Optional(Unsigned(label::smlVersion, 1)); }
constexpr Element ListName() { return Optional(Name(label::listName)); }
constexpr Element Time(std::string_view label) { return Optional(Of(kTime, label)); }
constexpr Element Path() { return Of(kTreePath, label::parTreePath); }
constexpr Element Node() { return Of(Tree::kNode, label::parTree); }

inline constexpr Element aOpenReq[] = {Codepage(), ClientId(), ReqFileId(), Optional(ServerId()),
                                       Username(), Password(), SmlVersion()};
inline constexpr Element aOpenRes[] = {Codepage(), Optional(ClientId()), ReqFileId(),
                                       ServerId(), Time(label::refTime), SmlVersion()};
inline constexpr Element aClose[] = {Signature(label::globalSignature)};
inline constexpr Element aGetProfileReq[] = {
    Optional(ServerId()),
    Username(),
    Password(),
    Optional(Boolean(label::withRawdata)),
    Time(label::beginTime),
    Time(label::endTime),
    Path(),
    Optional(Of(kObjectList, label::object_List)),
    Optional(Node()),
};
inline constexpr Element aGetProfPackRes[] = {
    ServerId(),
    Of(kTime, label::actTime),
    Unsigned(label::regPeriod, 4),
    Path(),
    Of(kHeaderList, label::header_List),
    Of(kPackPeriodList, label::period_List),
    Optional(Octets(label::rawdata)),
    Signature(label::profileSignature, kNoLimit),
};
inline constexpr Element aGetProfListRes[] = {
    ServerId(),
    Time(label::actTime),
    Optional(Unsigned(label::regPeriod, 4)),
    Path(),
    Time(label::valTime),
    Status(label::status),
    Of(kPeriodList, label::period_List),
    Optional(Octets(label::rawdata, SML_VALUE_CHUNK)),
    Signature(label::periodSignature),
};
inline constexpr Element aGetProcParReq[] = {Optional(ServerId()), Username(), Password(), Path(),
                                             Optional(Octets(label::attribute, SML_MAX_ATTRIBUTE))};
inline constexpr Element aGetProcParRes[] = {ServerId(), Path(), Node()};
inline constexpr Element aSetProcParReq[] = {Optional(ServerId()), Username(), Password(), Path(),
                                             Node()};
inline constexpr Element aGetListReq[] = {ClientId(), Optional(ServerId()), Username(), Password(),
                                          ListName()};
inline constexpr Element aGetListRes[] = {
    Optional(ClientId()),
    ServerId(),
    ListName(),
    Time(label::actSensorTime),
    Of(kList, label::valList),
    Signature(label::listSignature),
    Time(label::actGatewayTime),
};
inline constexpr Element aAttentionRes[] = {
    ServerId(),
    {label::attentionNo, eTYPE::OCTETS, eMEANING::ATTENTION, false, SML_NAME_SIZE},
    Optional(Octets(label::attentionMsg, SML_MAX_ATTENTION_MSG)),
    Optional(Node()),
};

inline constexpr Structure kOpenReq = Sequence(aOpenReq);
inline constexpr Structure kOpenRes = Sequence(aOpenRes);
inline constexpr Structure kClose = Sequence(aClose);
inline constexpr Structure kGetProfileReq = Sequence(aGetProfileReq);
inline constexpr Structure kGetProfPackRes = Sequence(aGetProfPackRes);
inline constexpr Structure kGetProfListRes = Sequence(aGetProfListRes);
inline constexpr Structure kGetProcParReq = Sequence(aGetProcParReq);
inline constexpr Structure kGetProcParRes = Sequence(aGetProcParRes);
inline constexpr Structure kSetProcParReq = Sequence(aSetProcParReq);
inline constexpr Structure kGetListReq = Sequence(aGetListReq);
inline constexpr Structure kGetListRes = Sequence(aGetListRes);
inline constexpr Structure kAttentionRes = Sequence(aAttentionRes);

// Both profile requests have one body. In the order of their tags.
inline constexpr Message kMessages[] = {
    {SML_OPEN_REQ, label::SmlOpenReq, "open request", kOpenReq},
    {SML_OPEN_RES, label::SmlOpenRes, "open response", kOpenRes},
    {SML_CLOSE_REQ, label::SmlCloseReq, "close request", kClose},
    {SML_CLOSE_RES, label::SmlCloseRes, "close response", kClose},
    {SML_GET_PROFILE_PACK_REQ, label::SmlGetProfileReq, "get-profile-pack request", kGetProfileReq},
    {SML_GET_PROFILE_PACK_RES, label::SmlGetProfPackRes, "get-profile-pack response",
     kGetProfPackRes},
    {SML_GET_PROFILE_LIST_REQ, label::SmlGetProfileReq, "get-profile-list request", kGetProfileReq},
    {SML_GET_PROFILE_LIST_RES, label::SmlGetProfListRes, "get-profile-list response",
     kGetProfListRes},
    {SML_GET_PROC_PAR_REQ, label::SmlGetProcParReq, "get-process-parameter request",
     kGetProcParReq},
    {SML_GET_PROC_PAR_RES, label::SmlGetProcParRes, "get-process-parameter response",
     kGetProcParRes},
    {SML_SET_PROC_PAR_REQ, label::SmlSetProcParReq, "set-process-parameter request",
     kSetProcParReq},
    {SML_GET_LIST_REQ, label::SmlGetListReq, "get-list request", kGetListReq},
    {SML_GET_LIST_RES, label::SmlGetListRes, "get-list response", kGetListRes},
    {SML_ATTENTION_RES, label::SmlAttentionRes, "attention response", kAttentionRes},
};

// Null for a tag that the library does not know.
constexpr const Message* FindMessage(unsigned tag)
{
    for (const Message& message : kMessages) {
        if (message.uiTag == tag)
            return &message;
    }
    return nullptr;
}

constexpr bool IsOpen(unsigned tag) { return tag == SML_OPEN_REQ || tag == SML_OPEN_RES; }
constexpr bool IsClose(unsigned tag) { return tag == SML_CLOSE_REQ || tag == SML_CLOSE_RES; }

// ---- The message itself

template <std::size_t... I>
constexpr std::array<Element, sizeof...(I)> Bodies(std::index_sequence<I...>)
{
    return {Tagged(kMessages[I].uiTag, Of(kMessages[I].body, kMessages[I].label))...};
}
inline constexpr auto aBodies = Bodies(std::make_index_sequence<std::size(kMessages)>());
inline constexpr Structure kBody = {eFORM::CHOICE, aBodies.data(), aBodies.size()};

inline constexpr Element aMessage[] = {
    Octets(label::transactionId, SML_MAX_TRANSACTION_ID),
    Unsigned(label::groupNo, 1),
    Unsigned(label::abortOnError, 1),
    Of(kBody, "messageBody"),
    {"crc16", eTYPE::CRC, eMEANING::PLAIN, false, 2},
    {"endOfSmlMsg", eTYPE::END},
};
inline constexpr Structure kMessage = Sequence(aMessage);

// ---- The record of a message, around its body

inline constexpr Element aMsgHeader[] = {
    Octets(label::transactionId, SML_MAX_TRANSACTION_ID),
    Unsigned(label::groupNo, 1),
    Unsigned(label::abortOnError, 1),
    Unsigned(label::smlMsgIdentifier, 4),
    // Of the file's open message
    Octets(label::openCid, SML_MAX_CLIENT_ID),
    Octets(label::openRfid, SML_MAX_REQ_FILE_ID),
    Octets(label::openSid, SML_MAX_SERVER_ID),
    Octets(label::openTid, SML_MAX_TRANSACTION_ID),
    Unsigned(label::openGNo, 1),
    Unsigned(label::openAOE, 1),
};
inline constexpr Structure kMsgHeader = Sequence(aMsgHeader);

inline constexpr Element aStatus[] = {Integer(label::Error, 4), Integer(label::Type, 4),
                                      Integer(label::Cast, 4), Unsigned(label::MsgNoInFile, 4)};
inline constexpr Structure kStatus = Sequence(aStatus);

// The body stands behind the header.
inline constexpr Element aRecord[] = {
    Of(kMsgHeader, label::SmlMsgHeader), Unsigned(label::SmlCrc, 2),
    Of(kStatus, label::SmlStatus),       Unsigned(label::SmltFlags, 4),
    Octets(label::SmlMsgRawData),
};
inline constexpr Structure kRecord = Sequence(aRecord);

// What a record has beside the elements of a choice, of a tree whose value came in packets, and of
// a body in packets.
inline constexpr Element aBeside[] = {
    Tag(),
    Of(kListType, label::smlList),
    Boolean(label::extFlag),
    Unsigned(label::extLen, 4),
    Unsigned(label::extMsgPart, 4),
};
inline constexpr Structure kBeside = Sequence(aBeside);

// Calls visit with each structure that the record of a message can hold, once.
template <typename Visit>
void VisitStructures(Visit visit)
{
    std::vector<const Structure*> found{&kRecord, &kBody, &kBeside};
    for (std::size_t i = 0; i < found.size(); ++i) {
        visit(*found[i]);
        for (const Element& element : *found[i]) {
            const Structure* const inner = element.pStructure;
            if (inner != nullptr && std::find(found.begin(), found.end(), inner) == found.end())
                found.push_back(inner);
        }
    }
}

} // namespace quarn::schema

#endif
