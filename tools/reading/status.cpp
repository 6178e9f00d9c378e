// See status.h.
#include "tools/reading/status.h"

#include "quarn/quarn.h"

namespace tool
{
namespace
{

template <typename Number>
struct Row {
    Number number;
    const char* pcMeaning;
};

template <typename Number, std::size_t Count>
const char* Find(const Row<Number> (&rows)[Count], Number number) noexcept
{
    for (const Row<Number>& row : rows) {
        if (row.number == number)
            return row.pcMeaning;
    }
    return nullptr;
}

} // namespace

const char* StatusMeaning(int error) noexcept
{
    static constexpr Row<int> kRows[] = {
        {SML_STATUS_OK, "good"},
        {SML_STATUS_IGNORE_FILE, "damaged or not SML, the file is ignored"},
        {SML_STATUS_CRC_CLOSE, "the checksum of the close request is wrong"},
        {SML_STATUS_CRC, "the checksum of the message is wrong"},
        {SML_STATUS_FE00, "cannot be decoded: attention FE00, error not specified"},
        {SML_STATUS_FE01, "cannot be decoded: attention FE01, unknown content"},
        {SML_STATUS_FE09, "cannot be decoded: attention FE09, value out of range"},
        {SML_STATUS_FE10, "lacks a field that is not optional: attention FE10"},
        {SML_STATUS_NULL_POINTER, "internal error of the parser: null pointer"},
        {SML_STATUS_UNKNOWN_STATE, "internal error of the parser: unknown state"},
    };
    const char* meaning = Find(kRows, error);
    return meaning != nullptr ? meaning : "refused for a reason that is not known";
}

const char* AttentionMeaning(std::uint64_t number) noexcept
{
    static constexpr Row<unsigned> kRows[] = {
        {0xFD00, "done"},
        {0xFE00, "error, not specified"},
        {0xFE01, "unknown message"},
        {0xFE02, "not authorised"},
        {0xFE03, "unknown server id"},
        {0xFE04, "unknown request file id"},
        {0xFE05, "attributes cannot be written"},
        {0xFE06, "attributes cannot be read"},
        {0xFE07, "communication with the measuring point is disturbed"},
        {0xFE08, "raw data cannot be interpreted"},
        {0xFE09, "value out of range"},
        {0xFE0A, "order not executed"},
        {0xFE0B, "checksum wrong"},
        {0xFE0C, "broadcast not supported"},
        {0xFE0D, "message not expected"},
        {0xFE0E, "unknown object in the profile"},
        {0xFE0F, "type of the value not supported"},
        {0xFE10, "optional element not supported"},
        {0xFE11, "profile has no entries"},
        {0xFE12, "end of the period is before its beginning"},
        {0xFE13, "no entries in the period"},
        {0xFE14, "file ended without a close message"},
    };
    constexpr std::uint64_t kAttention = 0x8181C7C70000;
    if ((number & ~std::uint64_t{0xFFFF}) != kAttention)
        return nullptr;
    return Find(kRows, static_cast<unsigned>(number & 0xFFFFU));
}

} // namespace tool
