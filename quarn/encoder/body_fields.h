// Readers of the fields that only message bodies have: paths, trees and lists.
#ifndef QUARN_ENCODER_BODY_FIELDS_H
#define QUARN_ENCODER_BODY_FIELDS_H

#include "quarn/encoder/convert.h"

namespace quarn::detail::encoder
{

Object ReadTreePath(const vorn::cRecord& body, const Field& field); // always a path, may be empty
Object ReadTree(const vorn::cRecord& body, const Field& field);
Object ReadObjectList(const vorn::cRecord& body, const Field& field); // absent when empty
// Lists of entries: empty (70) when the record is. Elements that are no records are traced and left
// out of the list and its count.
Object ReadPeriodList(const vorn::cRecord& body, const Field& field);
Object ReadValueList(const vorn::cRecord& body, const Field& field);
bool WritePeriodList(const vorn::cRecordPar& par, cBuffer& buf);
bool WriteValueList(const vorn::cRecordPar& par, cBuffer& buf);

constexpr Conversion kTreePath = {ReadTreePath, nullptr, KIND_RECORD, true};
constexpr Conversion kTree = {ReadTree, nullptr, KIND_RECORD};
constexpr Conversion kObjectList = {ReadObjectList, nullptr, KIND_RECORD};
constexpr Conversion kPeriodList = {ReadPeriodList, WritePeriodList, KIND_RECORD};
constexpr Conversion kValueList = {ReadValueList, WriteValueList, KIND_RECORD};

} // namespace quarn::detail::encoder

#endif
