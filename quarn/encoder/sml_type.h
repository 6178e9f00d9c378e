// The root of the encoder's objects. A message is built as a tree of objects, one for each SML
// value, and then asked to write itself into a buffer.
//
// An object that is not present ("toCode" false) writes the byte 01, the optional field that is not
// set. Objects know their SML type but not their place; lists, structures and choices hold pointers
// to them and say in their own headers who deletes what. Elements are deleted through Sml_Type*.
//
// Threads: an object serves one thread at a time. ToBin, the destructors and the setters never
// throw; where memory may run out, the operation says what happens then.
#ifndef QUARN_ENCODER_SML_TYPE_H
#define QUARN_ENCODER_SML_TYPE_H

#include "quarn/foundation/buffer.h"
#include "quarn/foundation/export.h"

enum eSML_TYPE : int {
    SML_TYPE_BOOL = 1,
    SML_TYPE_OCTET_STRING = 2,
    SML_TYPE_INTEGER8 = 3,
    SML_TYPE_INTEGER16 = 4,
    SML_TYPE_INTEGER32 = 5,
    SML_TYPE_INTEGER64 = 6,
    SML_TYPE_UNSIGNED8 = 7,
    SML_TYPE_UNSIGNED16 = 8,
    SML_TYPE_UNSIGNED32 = 9,
    SML_TYPE_UNSIGNED64 = 10,
    SML_TYPE_VALUE = 12, // the first five alternatives of a process-parameter value
    SML_TYPE_PERIOD_ENTRY = 13,
    SML_TYPE_TUPEL_ENTRY = 14,
    SML_TYPE_TIME = 15,
    SML_TYPE_LIST_ENTRY = 16,
    SML_TYPE_LIST = 17,
    SML_TYPE_TREE_PATH = 18,
    SML_TYPE_TREE = 19,
    SML_TYPE_NONE = 999
};

class Sml_ListOf;

class QUARN_API Sml_Type
{
public:
    Sml_Type() noexcept = default; // present, of no kind
    virtual ~Sml_Type();
    Sml_Type(const Sml_Type&) = delete;
    Sml_Type& operator=(const Sml_Type&) = delete;

    // Appends the encoding to buf. What does not fit is left out: a field stands there whole or not
    // at all, and later, shorter fields may still follow. REQUIRES: buf is not null.
    virtual void ToBin(cBuffer* buf) = 0;

    void SetToCode(bool present) noexcept { bToCode = present; }
    bool GetToCode() const noexcept { return bToCode; }
    void SetTypeId(int id) noexcept { iTypeId = id; }
    int GetTypeId() const noexcept { return iTypeId; }

protected:
    bool bToCode = true;
    int iTypeId = SML_TYPE_NONE;

private:
    friend class Sml_ListOf;

    // The list of what this object consists of; null: none.
    virtual Sml_ListOf* Parts() noexcept;
};

// What may stand where SML has a value.
class QUARN_API Sml_Value : public Sml_Type
{
public:
    ~Sml_Value() override;
};

// The byte 00 that ends a message.
class QUARN_API Sml_EndOfSmlMessage : public Sml_Type
{
public:
    ~Sml_EndOfSmlMessage() override;
    void ToBin(cBuffer* buf) override;
};

#endif
