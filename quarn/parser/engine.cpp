// The engine: walks the tables of fields, one frame for each structure that is under way. A frame's
// index is all the state that a structure has; the reader of the field in progress keeps its own
// place. So the walk may stop at any byte and go on by calling the same reader again.
#include "quarn/parser/engine.h"

#include <algorithm>
#include <cstring>

using namespace quarn::detail;

int cSMLP::Walk()
{
    const bool inDetail = Traces(LibSmlp, kDetail); // only the readers tell every step
    for (;;) {
        Frame& frame = aFrames[uiDepth];
        int rc = RC_LEFT;
        if (frame.uiIndex == 0) {
            rc = OpenSequence(frame);
            if (rc == RC_ABSENT)
                rc = Leave();
        } else {
            if (InputLeft() >= kLeastTaken && usFieldState == 0 && ePrimitive == Primitive::None &&
                !inDetail && frame.pLayout->pfnTake != nullptr)
                rc = (this->*frame.pLayout->pfnTake)(frame);
            if (rc == RC_LEFT)
                rc = ReadField(frame);
            while (rc == RC_DONE && aFrames[uiDepth].uiIndex > aFrames[uiDepth].uiCount) {
                if (uiDepth == 0)
                    return RC_MESSAGE;
                rc = Leave();
            }
        }
        if (rc == RC_DONE || rc == RC_ENTERED) {
            if (InputLeft() != 0 || !IsStuck())
                continue;
            rc = RC_INPUT_EMPTY;
        }
        TellStop(rc);
        return rc;
    }
}

// Tells the innermost of the structures under way that wants to hear of it.
void cSMLP::TellStop(int rc)
{
    for (std::uint32_t depth = uiDepth; depth != 0; --depth) {
        const Frame& frame = aFrames[depth];
        if (frame.pLayout->pfnStopped != nullptr)
            return (this->*frame.pLayout->pfnStopped)(frame, rc);
    }
}

// Without input nothing would come of another step but to run out of it: the next field is one of a
// table whose readers all want a byte first, and that byte has room.
bool cSMLP::IsStuck() const noexcept
{
    return StoreFree() >= kLeastTaken && aFrames[uiDepth].pLayout->pfnTake != nullptr;
}

inline int cSMLP::ReadField(Frame& frame)
{
    if (frame.uiIndex > frame.uiCount)
        return RC_DONE;
    const Field& field = CurrentField(frame);
    const int rc = (this->*field.pfnRead)(field);
    if (rc == RC_DONE)
        ++frame.uiIndex;
    return rc;
}

int cSMLP::OpenSequence(Frame& frame)
{
    const int rc = Decode_TLField();
    if (rc != RC_DONE)
        return rc;
    const Layout& layout = *frame.pLayout;
    if (uiTLF_Type == TLF_LIST) {
        if (layout.IsListOf()) {
            frame.uiCount = uiTLF_Count;
            if (frame.bOwn)
                builder.Expect(Believed(layout, uiTLF_Count, InputLeft()));
        } else if (uiTLF_Count != layout.uiCount) {
            return RefuseList(layout, layout.count);
        }
        frame.uiIndex = 1;
        if (layout.pcOpened != nullptr)
            Say(kDetail, layout.pcOpened, uiTLF_Count);
        return RC_DONE;
    }
    if (uiTLF_Type == TLF_ABSENT) {
        if (frame.bOptional)
            return RC_ABSENT;
        if (layout.absent.rc != 0)
            return RefuseList(layout, layout.absent);
    }
    return RefuseList(layout, layout.type);
}

// How many of the elements that a list announces room is made for: no more than the bytes at hand
// can hold, so that memory follows the bytes that came. Lists of what may be absent are not
// believed: they lie in one another, and each would count the same bytes.
std::uint32_t cSMLP::Believed(const Layout& list, std::uint32_t announced,
                              std::uint32_t left) noexcept
{
    const Field& element = *list.pFields;
    if (element.pLayout == nullptr || element.bOptional)
        return 0;
    return std::min(announced, left / (element.pLayout->uiCount + 1));
}

// Begins a structure whose list is still to be read; its fields are kept in the innermost record,
// which is opened for it when it is to have its own.
int cSMLP::Enter(const Layout& layout, bool optional, bool kept, bool own)
{
    if (uiDepth + 1 == kMaxFrames)
        return Refuse({RC_UNKNOWN_STATE, "ParseSmlMsg:Unknown State!, smlp[%d]"});
    Frame& frame = aFrames[++uiDepth];
    frame.pLayout = &layout;
    frame.uiIndex = 0;
    frame.uiCount = layout.uiCount;
    frame.bOptional = optional;
    frame.bFilled = false;
    frame.bDelivered = false;
    frame.pWrap = nullptr;
    frame.bKept = kept;
    frame.bOwn = kept && own;
    if (frame.bOwn) {
        frame.uiLevel = static_cast<std::uint32_t>(builder.Levels());
        builder.Open();
        builder.Expect(layout.uiCount);
    }
    usFieldState = 0;
    return RC_ENTERED;
}

// Begins a structure with a record of its own, as the value of field.
int cSMLP::EnterKept(const Layout& layout, const Field& field, const Label* wrap)
{
    const int rc = Enter(layout, field.bOptional, IsKept(field), true);
    if (rc == RC_ENTERED)
        aFrames[uiDepth].pWrap = wrap;
    return rc;
}

// Ends the innermost structure and hands its record to the one around it.
int cSMLP::Leave()
{
    Frame& done = aFrames[uiDepth--];
    Frame& parent = aFrames[uiDepth];
    const Field& field = CurrentField(parent);
    if (done.bOwn) {
        partDone = builder.Close();
        const bool due = done.bFilled || (field.eKeep == Keep::Always && !done.bDelivered);
        if (due && field.bLabelled) {
            if (done.pWrap != nullptr) {
                builder.Open();
                builder.AppendRecordPar(*done.pWrap, partDone, 0);
                partDone = builder.Close();
            }
            Target().AppendRecordPar(field.label, partDone, 0);
        }
    }
    ++parent.uiIndex;
    usFieldState = 0;
    return field.pfnHook != nullptr ? (this->*field.pfnHook)() : int{RC_DONE};
}

// Writes the refusal's trace, which has one conversion (the instance), two (number comes first) or
// five (the last four bytes of the store come first), and returns its code.
int cSMLP::Refuse(const Refusal& refusal, std::uint32_t number) const noexcept
{
    const char* const text = refusal.pcText;
    if (text == nullptr || !Traces(LibSmlp, kError))
        return refusal.rc;
    switch (std::count(text, text + std::strlen(text), '%')) {
    case 1:
        Say(kError, text);
        break;
    case 2:
        Say(kError, text, number);
        break;
    default:
        Say(kError, text, StoreTail(4), StoreTail(3), StoreTail(2), StoreTail(1));
        break;
    }
    return refusal.rc;
}

int cSMLP::RefuseList(const Layout& layout, const Refusal& refusal) const noexcept
{
    if (layout.pcPrefix == nullptr)
        return Refuse(refusal);
    Say(kError, refusal.pcText, layout.pcPrefix);
    return refusal.rc;
}

// ---- The message store

// All bytes of the store in one piece; in place where the input still holds them all.
const char* cSMLP::StoreBytes() noexcept
{
    if (uiMsgLen == 0)
        return reinterpret_cast<const char*>(pucRun);
    KeepRun();
    return reinterpret_cast<const char*>(aucMsgBuf.data());
}

void cSMLP::EmptyStore() noexcept
{
    uiMsgLen = 0;
    pucRun = pucInData;
}

// The back-th last byte of the store, counted from 1; 0 when there are fewer.
unsigned cSMLP::StoreTail(std::uint32_t back) const noexcept
{
    const auto run = static_cast<std::uint32_t>(pucInData - pucRun);
    if (back <= run)
        return *(pucInData - back);
    return back <= run + uiMsgLen ? aucMsgBuf[uiMsgLen + run - back] : 0U;
}
