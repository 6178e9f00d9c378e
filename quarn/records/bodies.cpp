// What a profile-list response becomes as a list response; see bodies.h.
#include "quarn/records/bodies.h"

#include "quarn/records/engine.h"

using namespace quarn::detail;

namespace
{

// Gives to the fields that from has under the same labels.
template <class To, class From>
void CopyShared(To& to, const From& from)
{
    static_cast<const StructureClass&>(ClassOf<To>())
        .CopyShared(&to, static_cast<const StructureClass&>(ClassOf<From>()), &from);
}

} // namespace

cSmlGetListRes& cSmlGetListRes::operator=(const cSmlGetProfListRes& source) noexcept
{
    Clear();
    if (!source.IsValid()) {
        Trace(LibQuarn, kError, "cSmlGetListRes::operator= : class cSmlGetProfListRes invalid!");
        return *this;
    }
    const bool done = Guarded("cSmlGetListRes", [&] {
        CopyShared(*this, source); // the server
        const field::PerList& periods = source;
        field::ValList& list = *this;
        auto& entries = Access::Content(Access::Value(list));
        for (const cSmlPeriodEntry& period : Access::Content(Access::Value(periods))) {
            cSmlListEntry& entry = entries.emplace_back();
            CopyShared(entry, source); // status and time
            CopyShared(entry, period);
            if (!entry.IsValid())
                entry.Clear();
        }
        Access::IsPresent(list) = true;
    });
    if (!done)
        Clear();
    return *this;
}
