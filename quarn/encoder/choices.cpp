// Times, list types and process-parameter values.
#include "quarn/encoder/choices.h"

#include "quarn/encoder/tl_writers.h"
#include "quarn/foundation/tl.h"
#include "quarn/foundation/trace.h"

using quarn::detail::kError;
using quarn::detail::Trace;

namespace
{

// A local timestamp at its longest: the list byte, 32 bits, twice 16 bits.
constexpr long kMaxLocalTimestamp = 1 + 5 + 3 + 3;

bool IsTimeChoice(unsigned char choice)
{
    return choice >= SML_TIME_SEC_INDEX && choice <= SML_TIME_LOCAL_TIMESTAMP;
}

} // namespace

Sml_Time::Sml_Time() noexcept { bToCode = false; }

Sml_Time::Sml_Time(unsigned char choice, unsigned int value, short loc, short sea) noexcept
{
    const bool local = choice == SML_TIME_LOCAL_TIMESTAMP;
    SetTime(choice, value, local ? loc : short{0}, local ? sea : short{0});
}

Sml_Time::~Sml_Time() = default;

void Sml_Time::Clear() noexcept
{
    ucChoice = 0;
    uiValue = 0;
    sLocOffset = sSeaOffset = 0;
    bToCode = false;
}

void Sml_Time::SetTime(unsigned char choice, unsigned int value, short loc, short sea) noexcept
{
    if (!IsTimeChoice(choice)) {
        Clear();
        return;
    }
    ucChoice = choice;
    uiValue = value;
    sLocOffset = loc;
    sSeaOffset = sea;
    bToCode = true;
}

void Sml_Time::SetChoice(unsigned char c) noexcept
{
    ucChoice = IsTimeChoice(c) ? c : static_cast<unsigned char>(0);
    bToCode = bToCode || ucChoice != 0;
}

void Sml_Time::SetValue(unsigned int v) noexcept
{
    uiValue = v;
    bToCode = true;
}

void Sml_Time::ToBin(cBuffer* buf)
{
    if (!bToCode) {
        ToBin_As_Option(buf);
        return;
    }
    ToBin_as_Choice(ucChoice, buf);
    if (ucChoice == 0) {
        ToBin_As_Option(buf);
    } else if (ucChoice != SML_TIME_LOCAL_TIMESTAMP) {
        ToBin_as_Unsigned(uiValue, buf);
    } else if (buf->Free() >= kMaxLocalTimestamp) {
        ToBin_as_ListCount(3, buf);
        ToBin_as_Unsigned(uiValue, buf);
        ToBin_as_Integer(sLocOffset, buf);
        ToBin_as_Integer(sSeaOffset, buf);
    }
}

namespace quarn::detail
{

ChoiceHolder::~ChoiceHolder() = default;

void ChoiceHolder::Hold(unsigned char choice, Sml_Type* e) noexcept
{
    if (e != pElement.get())
        pElement.reset(e);
    ucChoice = choice;
    bToCode = true;
}

void ChoiceHolder::Drop() noexcept
{
    pElement.reset();
    ucChoice = 0;
    bToCode = false;
}

void ChoiceHolder::ToBin(cBuffer* buf)
{
    if (!bToCode || !pElement) {
        ToBin_As_Option(buf);
        return;
    }
    ToBin_as_Choice(ucChoice, buf);
    pElement->ToBin(buf);
}

} // namespace quarn::detail

Sml_ListType::~Sml_ListType() = default;

void Sml_ListType::Set(unsigned char choice, Sml_Type* e) noexcept
{
    if (choice == 1) {
        Hold(choice, e);
        iTypeId = SML_TYPE_TIME;
    } else {
        Drop();
        Trace(LibSmle, kError, "Set_ListType: unknown choice: %d\n", int{choice});
    }
}

Sml_ProcParValue::~Sml_ProcParValue() = default;

void Sml_ProcParValue::Set_ProcParValue(unsigned char choice, Sml_Type* e) noexcept
{
    static constexpr int kTypes[] = {SML_TYPE_VALUE, SML_TYPE_PERIOD_ENTRY, SML_TYPE_TUPEL_ENTRY,
                                     SML_TYPE_TIME, SML_TYPE_LIST_ENTRY};
    if (choice >= 1 && choice <= 5) {
        Hold(choice, e);
        iTypeId = kTypes[choice - 1];
    } else {
        Drop();
        Trace(LibSmle, kError, "Set_ProcParValue: unknown choice: %d\n", int{choice});
    }
}
