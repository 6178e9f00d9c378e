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
    template <class Core>
    static Elements Resize(void* list, std::size_t count)
    {
        auto& content = static_cast<Core*>(list)->content;
        if (count != Storage::kSame)
            content.resize(count);
        return {content.data(), content.size()};
    }
};

namespace
{

template <eCLASS Number, class Core>
Core CoreOf(const Object<Number, Core>*);

template <class Fields, class As = StructureClass>
constexpr As Fielded(const Shape& shape)
{
    constexpr auto& rows = Access::kRows<Fields>;
    static_assert(rows.size() <= StructureClass::kMaxRows);
    return As(shape, Table(rows.data(), rows.size()));
}
// C is a class that is a set of fields.
template <class C>
constexpr auto Structured(const Shape& shape)
{
    return Fielded<decltype(CoreOf(static_cast<const C*>(nullptr)))>(shape);
}
template <class C>
constexpr StructureClass Entry(const char* name, const Label& own,
                               eFIELDS where = eFIELDS::ENCLOSED,
                               vorn::eLEVEL missingLevel = kDetail)
{
    return Structured<C>({name, own, where, missingLevel, true, true});
}
template <class C>
constexpr ListClass Listed(const char* name, const Label& own, const ListTexts& texts,
                           vorn::eLEVEL missingLevel = kDetail)
{
    using Core = decltype(CoreOf(static_cast<const C*>(nullptr)));
    using Element = typename C::Element;
    constexpr bool isObject = kKindOf<Element> == KIND_RECORD;
    unsigned number = 0;
    if constexpr (isObject)
        number = Element::kNumber;
    return {{name, own, eFIELDS::ENCLOSED, missingLevel},
            texts,
            {isObject, number, sizeof(Element), &Access::Resize<Core>}};
}

// clang-format off
constexpr std::tuple kDescriptions{
    Fielded<TimeFields, TimeClass>({"cSmlTime", label::SmlTime, eFIELDS::ENCLOSED, kUntraced, true, true}),
    Fielded<ListTypeFields, ListTypeClass>({"cSmlListType", label::smlList, eFIELDS::ENCLOSED, kUntraced, true, true}),
    ValueClass({"cSmlValue", label::value, eFIELDS::ENCLOSED, kDetail, true, true}),
    Entry<cSmlPeriodEntry>("cSmlPeriodEntry", label::SmlPeriodEntry, eFIELDS::EITHER),
    Fielded<tupel::Fields>({"cSmlTupelEntry", label::SmlTupelEntry, eFIELDS::ENCLOSED, kDetail, true, true}),
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

// Gives to the fields that from has under the same labels.
template <class To, class From>
void CopyShared(To& to, const From& from)
{
    static_cast<const StructureClass&>(ClassOf<To>())
        .CopyShared(&to, static_cast<const StructureClass&>(ClassOf<From>()), &from);
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
    const auto& type = *static_cast<const ListClass*>(kClasses[number]);
    const std::size_t count = type.Of(list).uiCount;
    const bool done = Guarded(type.shape.pcClass, [&] { type.Add(list, element); });
    if (!done)
        type.Shorten(list, count);
    return done;
}

cSmlGetListRes& cSmlGetListRes::operator=(const cSmlGetProfListRes& source) noexcept
{
    Clear();
    if (!source.IsValid()) {
        Trace(LibQuarn, kError, "cSmlGetListRes::operator= : class cSmlGetProfListRes invalid!");
        return *this;
    }
    cSmlPeriodList periods;
    const auto convert = [&](const Class&) {
        CopyShared(*this, source); // the server
        cSmlPeriodEntry period;
        cSmlList list;
        int count = 0;
        bool done = source.GetPerList(periods) && periods.GetListCount(count);
        for (int i = 0; done && i < count; ++i) {
            cSmlListEntry entry;
            done = periods.GetListEntry(period, i);
            CopyShared(entry, source); // status and time
            CopyShared(entry, period);
            done = done && list.SetListEntry(entry);
        }
        if (!done || !ValList::Set(list))
            throw std::bad_alloc();
    };
    Filled(kNumber, This(), convert);
    return *this;
}
