// The descriptions of all classes, in the order of their numbers; Engine's operations, which are
// the library's door for all of them; and the one conversion from a class to another.
#include "quarn/records/choices.h"

#include <tuple>

using namespace quarn::detail;

// How a description gets at what a class declares.
struct quarn::detail::Access {
    template <class Fields>
    static constexpr auto Rows()
    {
        std::array<Row, Fields::kRows> rows{};
        Description to{rows.data()};
        Fields::Describe(to, 0);
        if ((to.uiEnd + alignof(Fields) - 1) / alignof(Fields) * alignof(Fields) != sizeof(Fields))
            throw "fields do not lie one behind the other";
        return rows;
    }
    template <class Fields>
    static constexpr auto kRows = Rows<Fields>();
    template <class F>
    static void Copy(F& to, const F& from)
    {
        to.bPresent = from.bPresent;
        if (!TryAssign(to.value, from.value))
            throw std::bad_alloc();
    }
};

namespace
{

template <eCLASS Number, class Core>
Core CoreOf(const Object<Number, Core>*);

template <class C>
using CoreOfClass = decltype(CoreOf(static_cast<const C*>(nullptr)));

// C is a class that is a set of fields.
template <class C, class As = StructureClass>
constexpr As Structured(const Shape& shape)
{
    constexpr auto& rows = Access::kRows<CoreOfClass<C>>;
    static_assert(rows.size() <= StructureClass::kMaxRows);
    return As(shape, rows.data(), rows.size());
}
template <class C, class As = StructureClass>
constexpr As Entry(const char* name, const Label& own, eFIELDS where = eFIELDS::ENCLOSED,
                   vorn::eLEVEL missingLevel = kDetail)
{
    return Structured<C, As>({name, own, where, missingLevel, true, true});
}
template <class C>
constexpr auto Listed(const char* name, const Label& own, const ListTexts& texts,
                      vorn::eLEVEL missingLevel = kDetail)
{
    return ListClass<CoreOfClass<C>>({name, own, eFIELDS::ENCLOSED, missingLevel}, texts);
}

// clang-format off
constexpr std::tuple kDescriptions{
    Entry<cSmlTime, TimeClass>("cSmlTime", label::SmlTime, eFIELDS::ENCLOSED, kUntraced),
    Entry<cSmlListType, ListTypeClass>("cSmlListType", label::smlList, eFIELDS::ENCLOSED, kUntraced),
    ValueClass({"cSmlValue", label::value, eFIELDS::ENCLOSED, kDetail, true, true}),
    Entry<cSmlPeriodEntry>("cSmlPeriodEntry", label::SmlPeriodEntry, eFIELDS::EITHER),
    Entry<cSmlTupelEntry>("cSmlTupelEntry", label::SmlTupelEntry),
    Entry<cSmlHeaderEntry>("cSmlHeaderEntry", label::pObjHdEntry),
    Entry<cSmlValueEntry>("cSmlValueEntry", label::value_List_Entry),
    Entry<cSmlListEntry>("cSmlListEntry", label::valListEntry, eFIELDS::DIRECT),
    Structured<cSmlProfObjPeriodEntry>({"cSmlProfObjPeriodEntry", label::pObjPerEntry, eFIELDS::ENCLOSED, kError, true, false}),
    Listed<cSmlList>("cSmlList", label::valList,
        {label::valListEntry, "<valList>", "valListEntry invalid/empty/wrong type"}),
    Listed<cSmlPeriodList>("cSmlPeriodList", label::period_List,
        {label::SmlPeriodEntry, "<period_List>", "period_List_Entry invalid/empty/wrong type", true, true}),
    Listed<cSmlValueList>("cSmlValueList", label::value_List,
        {label::value_List_Entry, "<valList>", "value_List_Entry invalid/empty/wrong type", true}),
    Listed<cSmlHeaderList>("cSmlHeaderList", label::header_List,
        {label::pObjHdEntry, "<valList>", "valListEntry invalid/empty/wrong type", true}),
    Listed<cSmlProfObjPeriodList>("cSmlProfObjPeriodList", label::period_List,
        {label::pObjPerEntry, "period_List", "pObjPerEntry invalid/empty/wrong type", true}),
    Listed<cSmlTreePath>("cSmlTreePath", label::parTreePath,
        {label::path_Entry, "<parTreePath>", "path_Entry invalid/empty/wrong type", false, false, "class invalid"}),
    Listed<cSmlObjList>("cSmlObjList", label::object_List,
        {label::object_List_Entry, "<object_List>", "object_List_Entry invalid/empty/wrong type", false, false,
         "class invalid/empty", kProgress}, kUntraced),
    ProcParValueClass({"cSmlProcParValue", label::procParVal, eFIELDS::ENCLOSED, kDetail}),
    Listed<cSmlChildList>("cSmlChildList", label::child_List,
        {label::parTree, "<child_List>", "tree_Entry invalid/empty"}),
    Entry<cSmlTree>("cSmlTree", label::parTree, eFIELDS::EITHER),
    Structured<cSmlOpenReq>({"cSmlOpenReq", label::SmlOpenReq}),
    Structured<cSmlOpenResp>({"cSmlOpenRes", label::SmlOpenRes}),
    Structured<cSmlGetProfileReq>({"cSmlGetProfileReq", label::SmlGetProfileReq}),
    Structured<cSmlGetProfListRes>({"cSmlGetProfListRes", label::SmlGetProfListRes}),
    Structured<cSmlGetProfPackRes>({"cSmlGetProfPackRes", label::SmlGetProfPackRes}),
    Structured<cSmlGetProcParReq>({"cSmlGetProcParReq", label::SmlGetProcParReq}),
    Structured<cSmlGetProcParRes>({"cSmlGetProcParRes", label::SmlGetProcParRes}),
    Structured<cSmlSetProcParReq>({"cSmlSetProcParReq", label::SmlSetProcParReq}),
    Structured<cSmlAttentionRes>({"cSmlAttentionRes", label::SmlAttentionRes}),
    Structured<cSmlGetListReq>({"cSmlGetListReq", label::SmlGetListReq}),
    Structured<cSmlGetListRes>({"cSmlGetListRes", label::SmlGetListRes}),
    Structured<cSmlMsgHeader>({"cSmlMsgHeader", label::SmlMsgHeader}),
    Structured<cSmlMsgStatus>({"cSmlMsgStatus", label::SmlStatus, eFIELDS::ENCLOSED, kUntraced}),
};
// clang-format on

template <std::size_t... Number>
constexpr std::array<const Class*, CLASS_COUNT> Numbered(std::index_sequence<Number...>)
{
    return {{&std::get<Number>(kDescriptions)...}};
}

// Runs a step that fills an object, which is cleared when the step fails.
template <typename Step>
bool Filled(unsigned number, void* object, Step step) noexcept
{
    const Class& type = *kClasses[number];
    const bool done = Guarded(type.shape.pcClass, [&] { step(type); });
    if (!done)
        type.Clear(object);
    return done;
}

// Copies fields that both classes have.
template <class... F, class To, class From>
void CopyFields(To& to, const From& from)
{
    (Access::Copy<F>(to, from), ...);
}

} // namespace

constexpr decltype(kClasses) quarn::detail::kClasses =
    Numbered(std::make_index_sequence<CLASS_COUNT>());

bool Engine::Read(unsigned number, void* object, const vorn::cRecord& record,
                  const char* label) noexcept
{
    return Filled(number, object, [&](const Class& type) {
        Source around(record, 0);
        if (label != nullptr)
            type.ReadFrom(object, around.Find(label), around);
        else
            type.Read(object, around);
    });
}

bool Engine::Write(unsigned number, const void* object, vorn::cRecord& target,
                   const char* label) noexcept
{
    const Class& type = *kClasses[number];
    bool written = false;
    Guarded(type.shape.pcClass, [&] {
        written = type.WriteTo(target, object, label != nullptr ? label : type.shape.own);
    });
    return written;
}

bool Engine::Copy(unsigned number, void* to, const void* from) noexcept
{
    return Filled(number, to, [&](const Class& type) { type.Copy(to, from); });
}

bool Engine::Assign(unsigned number, void* to, const void* from) noexcept
{
    return Filled(number, to, [&](const Class& type) { type.Assign(to, from); });
}

bool Engine::Assign(std::string& to, const std::string& from) noexcept
{
    return Guarded("copy", [&] { to = std::string(from); });
}

void Engine::Settle(unsigned number, void* object) noexcept
{
    const Class& type = *kClasses[number];
    if (type.shape.bCopiedWhenValid && !type.IsValid(object))
        type.Clear(object);
    type.Settle(object);
}

void Engine::Clear(unsigned number, void* object) noexcept { kClasses[number]->Clear(object); }

bool Engine::IsValid(unsigned number, const void* object) noexcept
{
    return kClasses[number]->IsValid(object);
}

bool Engine::Add(unsigned number, void* list, const void* element) noexcept
{
    const Class& type = *kClasses[number];
    return Guarded(type.shape.pcClass, [&] { type.Add(list, element); });
}

cSmlGetListRes& cSmlGetListRes::operator=(const cSmlGetProfListRes& source) noexcept
{
    Clear();
    if (!source.IsValid()) {
        Trace(LibQuarn, kError, "cSmlGetListRes::operator= : class cSmlGetProfListRes invalid!");
        return *this;
    }
    const auto convert = [&](const Class&) {
        CopyFields<field::ServerId>(*this, source);
        cSmlPeriodList periods;
        cSmlPeriodEntry period;
        cSmlList list;
        int count = 0;
        bool done = source.GetPerList(periods) && periods.GetListCount(count);
        for (int i = 0; done && i < count; ++i) {
            cSmlListEntry entry;
            done = periods.GetListEntry(period, i);
            CopyFields<field::Status, field::ValTime>(entry, source);
            CopyFields<field::ObjName, field::Unit, field::Scaler, field::Value, field::ValueSign>(
                entry, period);
            done = done && list.SetListEntry(entry);
        }
        if (!done || !ValList::Set(list))
            throw std::bad_alloc();
    };
    Filled(kNumber, This(), convert);
    return *this;
}
