// The only door to the host's framework, namespace vorn: no other file of the library includes one
// of its headers. A build against a framework other than the one beside this library names that
// framework's header in QUARN_FRAMEWORK_HEADER.
//
// The assertions below state every operation that the library uses, with the types it relies on, so
// that a framework that lacks one fails to compile here, with a line that names it.
#ifndef QUARN_FOUNDATION_FRAMEWORK_H
#define QUARN_FOUNDATION_FRAMEWORK_H

#ifdef QUARN_FRAMEWORK_HEADER
#include QUARN_FRAMEWORK_HEADER
#else
#include "vorn/vorn.h"
#endif

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

namespace quarn::detail
{

template <typename Expected, typename Actual>
constexpr bool kYields = std::is_same_v<std::decay_t<Actual>, Expected>;

// Lvalues of the framework's types, for unevaluated expressions only.
vorn::cRecord& TheRecord();
const vorn::cRecord& TheConstRecord();
const vorn::cRecordPar& ThePar();
vorn::cRecordPath& ThePath();
vorn::cUnit& TheUnit();

template <typename T>
constexpr bool kIsValue = std::is_default_constructible_v<T>&& std::is_copy_constructible_v<T>&&
    std::is_copy_assignable_v<T>&& std::is_destructible_v<T>;

static_assert(kIsValue<vorn::cRecord>, "vorn::cRecord is a value");
static_assert(kIsValue<vorn::cRecordPar>, "vorn::cRecordPar is a value");
static_assert(std::is_base_of_v<vorn::cObject, vorn::cRecordPar>, "cRecordPar is a cObject");
static_assert(std::is_default_constructible_v<vorn::cRecordPath> &&
                  std::is_copy_constructible_v<vorn::cRecordPath>,
              "vorn::cRecordPath is a value");
static_assert(std::is_same_v<decltype(std::declval<vorn::cMsg&>().GetRecord()), vorn::cRecord&> &&
                  std::is_same_v<decltype(std::declval<const vorn::cMsg&>().GetRecord()),
                                 const vorn::cRecord&>,
              "vorn::cMsg::GetRecord");

// SeekNextPar makes the handle invalid when no parameter follows. What it returns is not looked at.
using RecordOperations =
    decltype(TheRecord().Create(), TheRecord().AppendUIntPar("", 0U, 0),
             TheRecord().AppendSIntPar("", 0, 0), TheRecord().AppendUInt64Par("", 0ULL, 0),
             TheRecord().AppendSInt64Par("", 0LL, 0), TheRecord().AppendBoolPar("", false, 0),
             TheRecord().AppendDataPar("", std::declval<const void*>(), 0, 0),
             TheRecord().AppendRecordPar("", TheConstRecord(), 0), TheRecord().DeletePar("", 0, 0),
             TheConstRecord().SeekNextPar(std::declval<vorn::cRecordPar&>(), "", 0, 0), void());
static_assert(kYields<vorn::cRecordPar, decltype(TheConstRecord().GetFirstPar("", 0, 0))>);
static_assert(kYields<int, decltype(TheConstRecord().GetParCount("", 0, 0))>);
static_assert(kYields<std::string, decltype(TheConstRecord().ToString())>);
static_assert(kYields<std::string, decltype(TheConstRecord().ToString2(0U, 0U))>);

static_assert(kYields<bool, decltype(ThePar().IsValid())>);
static_assert(kYields<bool, decltype(ThePar().IsEmpty())>);
static_assert(kYields<int, decltype(ThePar().GetType(1))>);
static_assert(kYields<unsigned int, decltype(ThePar().GetUInt())>);
static_assert(kYields<int, decltype(ThePar().GetSInt())>);
static_assert(kYields<unsigned long long, decltype(ThePar().GetUInt64())>);
static_assert(kYields<long long, decltype(ThePar().GetSInt64())>);
static_assert(kYields<bool, decltype(ThePar().GetBool())>);
static_assert(std::is_convertible_v<decltype(ThePar().GetData()), const char*>);
static_assert(std::is_convertible_v<decltype(ThePar().GetSize()), int>);
static_assert(kYields<bool, decltype(ThePar().GetRecord(TheRecord()))>);

using PathOperations = decltype(ThePath().AddLevel("", TheConstRecord()), void());

static_assert(std::is_base_of_v<vorn::cObject, vorn::cUnit>, "cUnit is a cObject");
static_assert(std::is_constructible_v<vorn::cUnit, const char*, vorn::eLEVEL, vorn::eOUTPUT>);
static_assert(std::is_convertible_v<decltype(TheUnit().iLevel), int>, "cUnit::iLevel");
static_assert(kYields<std::string, decltype(vorn::FormatString("%d", 0))>);
using TraceOperations = decltype(vorn::_Trace(&TheUnit(), vorn::eLEVEL(2), ""),
                                 vorn::_Trace(&TheUnit(), vorn::eLEVEL(2), std::string()), void());

static_assert(kYields<unsigned short, decltype(vorn::initCRC16())>);
static_assert(
    kYields<unsigned short, decltype(vorn::addByte2CRC16(std::declval<unsigned char>(),
                                                         std::declval<unsigned short>()))>);
static_assert(
    kYields<unsigned short, decltype(vorn::createCRC16("", 0, std::declval<unsigned short>()))>);

// Beyond the contract: a framework that defines VORN_PARAMETERS_IN_PLACE shows its records'
// parameters in place. It has begin() and end() of a record, and of a parameter that holds one, as
// pointers to parameters, and GetName() of each parameter, of which kReadableName bytes can be read
// whatever the name's length. The library reads such records without copying parameters, others
// through the operations above, with the same result.
inline constexpr std::size_t kReadableName = 26;
#ifdef VORN_PARAMETERS_IN_PLACE
inline constexpr bool kShowsParameters = true;
static_assert(kYields<const vorn::cRecordPar*, decltype(TheConstRecord().begin())>);
static_assert(kYields<const vorn::cRecordPar*, decltype(TheConstRecord().end())>);
static_assert(kYields<const vorn::cRecordPar*, decltype(ThePar().begin())>);
static_assert(kYields<const vorn::cRecordPar*, decltype(ThePar().end())>);
static_assert(kYields<const char*, decltype(ThePar().GetName())>);
#else
inline constexpr bool kShowsParameters = false;
#endif

} // namespace quarn::detail

#endif
