// The classes' descriptions, made from their declarations; their table by number; and the one
// conversion from a class to another.
#include "quarn/records/engine.h"
#include "quarn/records/envelope.h"

using namespace quarn::detail;

namespace
{

template <class Fields>
constexpr auto Rows()
{
    std::array<Row, Access::kRows<Fields>> rows{};
    Access::Describe<Fields>(rows.data());
    return rows;
}
template <class Fields>
constexpr auto kRows = Rows<Fields>();

template <class Type, class Fields>
constexpr Type Structure()
{
    static_assert(kRows<Fields>.size() <= StructureClass::kMaxRows);
    return Type(Fields::kShape, kRows<Fields>.data(), kRows<Fields>.size(),
                &Access::Locate<Fields>);
}

template <class List>
ListClass::Elements ElementsOf(void* list)
{
    auto& elements = Access::Content(*static_cast<List*>(list));
    return {elements.data(), elements.size()};
}
template <class List>
void* Resize(void* list, std::size_t count)
{
    auto& elements = Access::Content(*static_cast<List*>(list));
    elements.resize(count);
    return elements.data();
}

template <class Fields>
constexpr StructureClass Describe(const Fields*)
{
    return Structure<StructureClass, Fields>();
}
constexpr TimeClass Describe(const TimeFields*) { return Structure<TimeClass, TimeFields>(); }
constexpr ListTypeClass Describe(const ListTypeFields*)
{
    return Structure<ListTypeClass, ListTypeFields>();
}
constexpr ValueClass Describe(const ValueCore*) { return {}; }
constexpr ProcParValueClass Describe(const ProcParValueCore*) { return {}; }
template <class Traits>
constexpr ListClass Describe(const ListCore<Traits>*)
{
    using List = ListCore<Traits>;
    using Element = typename Traits::Element;
    unsigned element = 0;
    if constexpr (kValueOf<Element> == eVALUE::OBJECT)
        element = Access::kId<Element>;
    return {Traits::kShape,
            {kValueOf<Element>, element, sizeof(Element), &ElementsOf<List>, &Resize<List>}};
}

template <class Core>
constexpr auto kClass = Describe(static_cast<const Core*>(nullptr));

template <class... Core>
constexpr std::array<const Class*, sizeof...(Core)> Table(ClassList<Core...>)
{
    return {{&kClass<Core>...}};
}

} // namespace

constexpr decltype(kClasses) quarn::detail::kClasses = Table(Classes());
