// See correction.h.
#include "tools/reading/correction.h"

#include "tools/input/hex_reader.h"

#include <algorithm>
#include <iterator>

namespace tool
{
namespace
{

std::optional<Integer> AsUnsigned(const vorn::cRecordPar& value, Integer number) noexcept
{
    if (!number.bNegative)
        return std::nullopt;
    constexpr std::uint64_t kTwoBytes = 0x8000; // the most that a negative number of them is
    const std::uint64_t bits = 0 - number.ullMagnitude;
    if (value.GetType(1) == quarn::KIND_SINT64)
        return Integer::Of(bits);
    return Integer::Of(bits & (number.ullMagnitude <= kTwoBytes ? 0xFFFFU : 0xFFFFFFFFU));
}

std::optional<Integer> AsSigned8(const vorn::cRecordPar&, Integer number) noexcept
{
    if (number.bNegative || number.ullMagnitude < 0x80 || number.ullMagnitude > 0xFF)
        return std::nullopt;
    return Integer{0x100 - number.ullMagnitude, true};
}

constexpr struct {
    eCORRECTION what;
    const char* pcName;
    std::optional<Integer> (*Apply)(const vorn::cRecordPar& value, Integer number);
} kCorrections[] = {
    {eCORRECTION::UNSIGNED, "unsigned", AsUnsigned},
    {eCORRECTION::SIGN8, "sign8", AsSigned8},
};

} // namespace

bool ParseCorrection(std::string_view text, Correction& correction)
{
    correction = Correction();
    const std::size_t equals = text.rfind('=');
    if (equals == std::string_view::npos)
        return false;
    const auto* row = std::find_if(
        std::begin(kCorrections), std::end(kCorrections),
        [name = text.substr(equals + 1)](const auto& known) { return name == known.pcName; });
    if (row == std::end(kCorrections))
        return false;
    correction.what = row->what;
    std::string_view code = text.substr(0, equals);
    const std::size_t slash = code.find('/');
    if (slash != std::string_view::npos) {
        cHexReader hex;
        if (!hex.Read(code.substr(0, slash), correction.server) || hex.HasHalfByte() ||
            correction.server.empty())
            return false;
        code.remove_prefix(slash + 1);
    }
    return ParseObisPattern(code, correction.pattern);
}

void Correct(const std::vector<Correction>& corrections, std::string_view server,
             std::vector<Reading>& readings)
{
    for (Reading& reading : readings) {
        const auto meant =
            std::find_if(corrections.begin(), corrections.end(), [&](const Correction& correction) {
                return correction.pattern.Matches(reading.ullObis) &&
                       (correction.server.empty() || correction.server == server);
            });
        const std::optional<Integer> number = NumberOf(*reading.pValue);
        if (meant == corrections.end() || !number)
            continue;
        const auto& row = kCorrections[static_cast<std::size_t>(meant->what)];
        reading.corrected = row.Apply(*reading.pValue, *number);
        if (reading.corrected)
            reading.pcCorrection = row.pcName;
    }
}

} // namespace tool
