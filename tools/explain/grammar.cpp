// See grammar.h. Names are those of the labels in records, so that a field is found again there.
#include "tools/explain/grammar.h"

#include "quarn/quarn.h"

namespace tool
{
namespace
{

constexpr bool kOptional = true;
constexpr bool kRequired = false;

template <std::size_t Count>
constexpr Shape Sequence(const Field (&fields)[Count])
{
    return {eSHAPE::SEQUENCE, fields, Count};
}

template <std::size_t Count>
constexpr Shape Choice(const Field (&fields)[Count])
{
    return {eSHAPE::CHOICE, fields, Count};
}

constexpr Shape List(const Field& element) { return {eSHAPE::LIST, &element, 1}; }

constexpr Field Part(const char* name, const Shape& shape, bool optional = kRequired,
                     unsigned tag = 0)
{
    return {name, eFIELD::SHAPE, optional, &shape, tag};
}

// ---- Times

constexpr Field kLocalTimeFields[] = {
    {"value", eFIELD::TIMESTAMP}, {"locOffset", eFIELD::MINUTES}, {"seaOffset", eFIELD::MINUTES}};
constexpr Shape kLocalTime = Sequence(kLocalTimeFields);
constexpr Field kTimes[] = {{"value (seconds index)", eFIELD::SECONDS, kRequired, nullptr, 1},
                            {"value (timestamp)", eFIELD::TIMESTAMP, kRequired, nullptr, 2},
                            Part("local timestamp", kLocalTime, kRequired, 3)};
constexpr Shape kTime = Choice(kTimes);
constexpr Field kListTypes[] = {Part("SmlTime", kTime, kRequired, 1)};

// ---- Entries

constexpr Field kListEntryFields[] = {{"objName", eFIELD::NAME},
                                      {"status", eFIELD::STATUS, kOptional},
                                      Part("valTime", kTime, kOptional),
                                      {"unit", eFIELD::UNIT, kOptional},
                                      {"scaler", eFIELD::SCALER, kOptional},
                                      {"value", eFIELD::VALUE, kOptional},
                                      {"valueSignature", eFIELD::OCTETS, kOptional}};
constexpr Shape kListEntry = Sequence(kListEntryFields);
constexpr Field kListEntryElement = Part("valListEntry", kListEntry);
constexpr Shape kValList = List(kListEntryElement);

constexpr Field kPeriodEntryFields[] = {{"objName", eFIELD::NAME},
                                        {"unit", eFIELD::UNIT},
                                        {"scaler", eFIELD::SCALER},
                                        {"value", eFIELD::VALUE, kOptional},
                                        {"valueSignature", eFIELD::OCTETS, kOptional}};
constexpr Shape kPeriodEntry = Sequence(kPeriodEntryFields);
constexpr Field kPeriodEntryElement = Part("SmlPeriodEntry", kPeriodEntry);
constexpr Shape kPeriodList = List(kPeriodEntryElement);

constexpr Field kHeaderEntryFields[] = {
    {"objName", eFIELD::NAME}, {"unit", eFIELD::UNIT}, {"scaler", eFIELD::SCALER}};
constexpr Shape kHeaderEntry = Sequence(kHeaderEntryFields);
constexpr Field kHeaderEntryElement = Part("pObjHdEntry", kHeaderEntry);
constexpr Shape kHeaderList = List(kHeaderEntryElement);

constexpr Field kValueEntryFields[] = {{"value", eFIELD::VALUE, kOptional},
                                       {"valueSignature", eFIELD::OCTETS, kOptional}};
constexpr Shape kValueEntry = Sequence(kValueEntryFields);
constexpr Field kValueEntryElement = Part("value_List_Entry", kValueEntry);
constexpr Shape kValueList = List(kValueEntryElement);
constexpr Field kPackPeriodFields[] = {Part("valTime", kTime),
                                       {"status", eFIELD::STATUS, kOptional},
                                       Part("value_List", kValueList),
                                       {"periodSignature", eFIELD::OCTETS, kOptional}};
constexpr Shape kPackPeriod = Sequence(kPackPeriodFields);
constexpr Field kPackPeriodElement = Part("pObjPerEntry", kPackPeriod);
constexpr Shape kPackPeriodList = List(kPackPeriodElement);

constexpr Field kTupelFields[] = {{"serverId", eFIELD::OCTETS, kOptional},
                                  Part("secIndex", kTime),
                                  {"status", eFIELD::STATUS},
                                  {"unit_pA", eFIELD::UNIT},
                                  {"scaler_pA", eFIELD::SCALER},
                                  {"value_pA", eFIELD::VALUE, kOptional},
                                  {"unit_R1", eFIELD::UNIT},
                                  {"scaler_R1", eFIELD::SCALER},
                                  {"value_R1", eFIELD::VALUE, kOptional},
                                  {"unit_R4", eFIELD::UNIT},
                                  {"scaler_R4", eFIELD::SCALER},
                                  {"value_R4", eFIELD::VALUE, kOptional},
                                  {"signature_pA_R1_R4", eFIELD::OCTETS, kOptional},
                                  {"unit_mA", eFIELD::UNIT},
                                  {"scaler_mA", eFIELD::SCALER},
                                  {"value_mA", eFIELD::VALUE, kOptional},
                                  {"unit_R2", eFIELD::UNIT},
                                  {"scaler_R2", eFIELD::SCALER},
                                  {"value_R2", eFIELD::VALUE, kOptional},
                                  {"unit_R3", eFIELD::UNIT},
                                  {"scaler_R3", eFIELD::SCALER},
                                  {"value_R3", eFIELD::VALUE, kOptional},
                                  {"signature_mA_R2_R3", eFIELD::OCTETS, kOptional}};
constexpr Shape kTupel = Sequence(kTupelFields);

// ---- Trees and paths

constexpr Field kPathElement = {"path_Entry", eFIELD::NAME};
constexpr Shape kPath = List(kPathElement);
constexpr Field kObjectElement = {"object_List_Entry", eFIELD::NAME};
constexpr Shape kObjects = List(kObjectElement);

constexpr Field kTreeValues[] = {{"value", eFIELD::VALUE, kOptional, nullptr, 1},
                                 Part("SmlPeriodEntry", kPeriodEntry, kRequired, 2),
                                 Part("SmlTupelEntry", kTupel, kRequired, 3),
                                 Part("SmlTime", kTime, kRequired, 4),
                                 Part("valListEntry", kListEntry, kRequired, 5)};
constexpr Shape kTreeValue = Choice(kTreeValues);
extern const Shape kTree;
extern const Shape kChildren;
constexpr Field kTreeFields[] = {{"parName", eFIELD::NAME},
                                 Part("procParVal", kTreeValue, kOptional),
                                 Part("child_List", kChildren, kOptional)};
const Shape kTree = Sequence(kTreeFields);
constexpr Field kTreeElement = Part("parTree", kTree, kOptional);
const Shape kChildren = List(kTreeElement);

// ---- Bodies

constexpr Field kServerId = {"serverId", eFIELD::OCTETS, kOptional};
constexpr Field kUsername = {"username", eFIELD::OCTETS, kOptional};
constexpr Field kPassword = {"password", eFIELD::OCTETS, kOptional};
constexpr Field kPathPart = Part("parTreePath", kPath);

constexpr Field kOpenReq[] = {{"codepage", eFIELD::OCTETS, kOptional},
                              {"clientId", eFIELD::OCTETS},
                              {"reqFileId", eFIELD::OCTETS},
                              kServerId,
                              kUsername,
                              kPassword,
                              {"smlVersion", eFIELD::NUMBER, kOptional}};
constexpr Field kOpenRes[] = {
    {"codepage", eFIELD::OCTETS, kOptional}, {"clientId", eFIELD::OCTETS, kOptional},
    {"reqFileId", eFIELD::OCTETS},           {"serverId", eFIELD::OCTETS},
    Part("refTime", kTime, kOptional),       {"smlVersion", eFIELD::NUMBER, kOptional}};
constexpr Field kClose[] = {{"globalSignature", eFIELD::OCTETS, kOptional}};
constexpr Field kProfileReq[] = {kServerId,
                                 kUsername,
                                 kPassword,
                                 {"withRawdata", eFIELD::BOOLEAN, kOptional},
                                 Part("beginTime", kTime, kOptional),
                                 Part("endTime", kTime, kOptional),
                                 kPathPart,
                                 Part("object_List", kObjects, kOptional),
                                 Part("parTree", kTree, kOptional)};
constexpr Field kProfilePackRes[] = {
    {"serverId", eFIELD::OCTETS},           Part("actTime", kTime),
    {"regPeriod", eFIELD::NUMBER},          kPathPart,
    Part("header_List", kHeaderList),       Part("period_List", kPackPeriodList),
    {"rawdata", eFIELD::OCTETS, kOptional}, {"profileSignature", eFIELD::OCTETS, kOptional}};
constexpr Field kProfileListRes[] = {{"serverId", eFIELD::OCTETS},
                                     Part("actTime", kTime, kOptional),
                                     {"regPeriod", eFIELD::NUMBER, kOptional},
                                     kPathPart,
                                     Part("valTime", kTime, kOptional),
                                     {"status", eFIELD::STATUS},
                                     Part("period_List", kPeriodList),
                                     {"rawdata", eFIELD::OCTETS, kOptional},
                                     {"periodSignature", eFIELD::OCTETS, kOptional}};
constexpr Field kProcParReq[] = {
    kServerId, kUsername, kPassword, kPathPart, {"attribute", eFIELD::OCTETS, kOptional}};
constexpr Field kProcParRes[] = {{"serverId", eFIELD::OCTETS}, kPathPart, Part("parTree", kTree)};
constexpr Field kSetProcParReq[] = {kServerId, kUsername, kPassword, kPathPart,
                                    Part("parTree", kTree)};
constexpr Field kListReq[] = {{"clientId", eFIELD::OCTETS},
                              kServerId,
                              kUsername,
                              kPassword,
                              {"listName", eFIELD::NAME, kOptional}};
constexpr Field kListRes[] = {{"clientId", eFIELD::OCTETS, kOptional},
                              {"serverId", eFIELD::OCTETS},
                              {"listName", eFIELD::NAME, kOptional},
                              Part("actSensorTime", kTime, kOptional),
                              Part("valList", kValList),
                              {"listSignature", eFIELD::OCTETS, kOptional},
                              Part("actGatewayTime", kTime, kOptional)};
constexpr Field kAttentionRes[] = {{"serverId", eFIELD::OCTETS},
                                   {"attentionNo", eFIELD::ATTENTION},
                                   {"attentionMsg", eFIELD::OCTETS, kOptional},
                                   Part("parTree", kTree, kOptional)};

constexpr Shape kOpenReqBody = Sequence(kOpenReq);
constexpr Shape kOpenResBody = Sequence(kOpenRes);
constexpr Shape kCloseBody = Sequence(kClose);
constexpr Shape kProfileReqBody = Sequence(kProfileReq);
constexpr Shape kProfilePackResBody = Sequence(kProfilePackRes);
constexpr Shape kProfileListResBody = Sequence(kProfileListRes);
constexpr Shape kProcParReqBody = Sequence(kProcParReq);
constexpr Shape kProcParResBody = Sequence(kProcParRes);
constexpr Shape kSetProcParReqBody = Sequence(kSetProcParReq);
constexpr Shape kListReqBody = Sequence(kListReq);
constexpr Shape kListResBody = Sequence(kListRes);
constexpr Shape kAttentionResBody = Sequence(kAttentionRes);

constexpr Field kBodies[] = {
    Part("SmlOpenReq", kOpenReqBody, kRequired, SML_OPEN_REQ),
    Part("SmlOpenRes", kOpenResBody, kRequired, SML_OPEN_RES),
    Part("SmlCloseReq", kCloseBody, kRequired, SML_CLOSE_REQ),
    Part("SmlCloseRes", kCloseBody, kRequired, SML_CLOSE_RES),
    Part("SmlGetProfileReq", kProfileReqBody, kRequired, SML_GET_PROFILE_PACK_REQ),
    Part("SmlGetProfPackRes", kProfilePackResBody, kRequired, SML_GET_PROFILE_PACK_RES),
    Part("SmlGetProfileReq", kProfileReqBody, kRequired, SML_GET_PROFILE_LIST_REQ),
    Part("SmlGetProfListRes", kProfileListResBody, kRequired, SML_GET_PROFILE_LIST_RES),
    Part("SmlGetProcParReq", kProcParReqBody, kRequired, SML_GET_PROC_PAR_REQ),
    Part("SmlGetProcParRes", kProcParResBody, kRequired, SML_GET_PROC_PAR_RES),
    Part("SmlSetProcParReq", kSetProcParReqBody, kRequired, SML_SET_PROC_PAR_REQ),
    Part("SmlGetListReq", kListReqBody, kRequired, SML_GET_LIST_REQ),
    Part("SmlGetListRes", kListResBody, kRequired, SML_GET_LIST_RES),
    Part("SmlAttentionRes", kAttentionResBody, kRequired, SML_ATTENTION_RES)};
constexpr Shape kBody = Choice(kBodies);

constexpr Field kMessageFields[] = {{"transactionId", eFIELD::OCTETS},
                                    {"groupNo", eFIELD::NUMBER},
                                    {"abortOnError", eFIELD::NUMBER},
                                    Part("messageBody", kBody),
                                    {"crc16", eFIELD::CRC},
                                    {"endOfSmlMsg", eFIELD::END}};
constexpr Shape kMessageShape = Sequence(kMessageFields);

} // namespace

const Field kMessage = Part("message", kMessageShape);
const Shape kListType = Choice(kListTypes);

} // namespace tool
