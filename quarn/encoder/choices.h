// Values that SML writes as a choice: a list of two elements, the number of the alternative and
// then what was chosen.
#ifndef QUARN_ENCODER_CHOICES_H
#define QUARN_ENCODER_CHOICES_H

#include "quarn/encoder/sml_type.h"

#include <memory>

enum eSML_TIME : unsigned char {
    SML_TIME_SEC_INDEX = 1,
    SML_TIME_TIMESTAMP = 2,
    SML_TIME_LOCAL_TIMESTAMP = 3 // with offsets in minutes
};

// A time: seconds, and for a local timestamp two offsets in minutes.
class QUARN_API Sml_Time : public Sml_Value
{
public:
    Sml_Time() noexcept; // absent
    // Absent when choice is none of eSML_TIME. The offsets count for a local timestamp only.
    Sml_Time(unsigned char choice, unsigned int value, short loc, short sea) noexcept;
    ~Sml_Time() override;

    void ToBin(cBuffer* buf) override;

    void Clear() noexcept; // absent, everything 0
    // All four at once; any other choice than those of eSML_TIME clears.
    void SetTime(unsigned char choice, unsigned int value, short loc, short sea) noexcept;
    // A valid choice makes the time present. Any other stands as 0 and leaves it present or absent
    // as it was; a present time with choice 0 writes 01 in place of its value.
    void SetChoice(unsigned char c) noexcept;
    void SetValue(unsigned int v) noexcept; // present from now on
    void SetLocOffset(short minutes) noexcept { sLocOffset = minutes; }
    void SetSeaOffset(short minutes) noexcept { sSeaOffset = minutes; }

private:
    unsigned char ucChoice = 0;
    unsigned int uiValue = 0;
    short sLocOffset = 0;
    short sSeaOffset = 0;
};

namespace quarn::detail
{

// A choice that owns the chosen element.
class QUARN_API ChoiceHolder : public Sml_Value
{
public:
    ~ChoiceHolder() override;

    void ToBin(cBuffer* buf) override;

    Sml_Type* GetType() const noexcept { return pElement.get(); } // still owned by this object
    unsigned char GetChoice() const noexcept { return ucChoice; }

protected:
    ChoiceHolder() noexcept { bToCode = false; }
    void Hold(unsigned char choice, Sml_Type* e) noexcept; // takes over e
    void Drop() noexcept;                                  // absent

private:
    unsigned char ucChoice = 0;
    std::unique_ptr<Sml_Type> pElement;
};

} // namespace quarn::detail

// The list type among the values. Its only alternative is 1, a time.
class QUARN_API Sml_ListType : public quarn::detail::ChoiceHolder
{
public:
    Sml_ListType() noexcept = default; // absent
    Sml_ListType(unsigned char choice, Sml_Type* e) noexcept { Set(choice, e); }
    ~Sml_ListType() override;

    // Takes e over and deletes what it held. Any other choice than 1 makes the object absent, is
    // traced at level 2, and leaves e to the caller.
    void Set(unsigned char choice, Sml_Type* e) noexcept;
};

// The value of a node in a parameter tree: 1 a value, 2 a period entry, 3 a tupel entry, 4 a time,
// 5 a list entry.
class QUARN_API Sml_ProcParValue : public quarn::detail::ChoiceHolder
{
public:
    Sml_ProcParValue() noexcept = default; // absent
    Sml_ProcParValue(unsigned char choice, Sml_Type* e) noexcept { Set_ProcParValue(choice, e); }
    ~Sml_ProcParValue() override;

    // As Sml_ListType::Set, with the choices 1 to 5.
    void Set_ProcParValue(unsigned char choice, Sml_Type* e) noexcept;
};

#endif
