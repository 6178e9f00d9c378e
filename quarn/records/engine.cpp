// The two classes that are a choice; the descriptions of all classes, in the order of their
// numbers; Engine's operations, the library's door for all of them; and the one conversion between
// classes.
#include "quarn/records/engine.h"

#include <tuple>

using namespace quarn::detail;
namespace schema = quarn::schema;

// NOLINTBEGIN(cppcoreguidelines-virtual-class-destructor): as in engine.h
namespace quarn::detail
{

// Makes the choice the alternative of that index and runs a step on it; false when there is none.
template <std::size_t At = 1, class Choice, typename Do>
bool WithNew(std::size_t index, Choice& choice, Do run)
{
    if constexpr (At < std::variant_size_v<Choice>) {
        if (index == At)
            return run(choice.template emplace<At>());
        return WithNew<At + 1>(index, choice, run);
    }
    return false;
}

template <class Core>
class ChoiceClass : public Class
{
public:
    using Class::Class;

    void Clear(void* choice) const noexcept final { Of(choice) = Core(); }
    void Copy(void* to, const void* from) const override
    {
        const auto& source = Of(from).content;
        const auto copy = [&](auto& v) {
            using Held = std::decay_t<decltype(v)>;
            if constexpr (kKindOf<Held> == KIND_RECORD)
                ClassOf<Held>().Copy(&v, std::get_if<Held>(&source));
            else
                v = *std::get_if<Held>(&source);
            return true;
        };
        if (!WithNew(source.index(), Of(to).content, copy))
            Of(to).content = {};
    }

protected:
    static Core& Of(void* choice) { return *static_cast<Core*>(choice); }
    static const Core& Of(const void* choice) { return *static_cast<const Core*>(choice); }
};

class ValueClass final : public ChoiceClass<ValueCore>
{
public:
    using ChoiceClass::ChoiceClass;

    bool IsValid(const void* value) const noexcept override { return Of(value).bValid; }
    bool ReadFrom(void* value, const vorn::cRecordPar* par, Source& around) const override
    {
        ValueCore& to = Of(value);
        if (par == nullptr || !par->IsValid() || par->IsEmpty()) {
            TraceMissing();
            return false;
        }
        if (par->GetType(1) != KIND_RECORD)
            return to.bValid =
                       TakeOneOf<long long, std::string, unsigned, unsigned long long, int, bool>(
                           *par, to.content);
        Source inside(around.uiDepth);
        return to.bValid = inside.Open(par) && ClassOf<cSmlListType>().Read(
                                                   &to.content.emplace<cSmlListType>(), inside);
    }
    // Of a list type only: other values are a parameter themselves. One that is not valid, as an
    // assignment may leave it, is an empty record, with its own trace line.
    bool WriteInto(const void* value, RecordBuilder& to) const override
    {
        const auto* listType = std::get_if<cSmlListType>(&Of(value).content);
        ClassOf<cSmlListType>().Write(listType, to, label::smlList);
        return true;
    }
    bool Write(const void* value, RecordBuilder& to, const Label& label) const override
    {
        return WritePlain(value, to, label) || (IsValid(value) && Class::Write(value, to, label));
    }
    bool WriteTo(vorn::cRecord& target, const void* value, const char*) const override
    {
        return WritePlain(value, target, shape.own) ||
               (IsValid(value) && Class::WriteTo(target, value, shape.own));
    }
    void Copy(void* to, const void* from) const override
    {
        ChoiceClass::Copy(to, from);
        Of(to).bValid = Of(from).bValid;
    }
    void Settle(void* value) const noexcept override
    {
        if (auto* listType = std::get_if<cSmlListType>(&Of(value).content))
            ClassOf<cSmlListType>().Settle(listType);
    }

private:
    template <class Target> // a record or a builder
    bool WritePlain(const void* value, Target& to, const Label& label) const
    {
        if (!IsValid(value))
            return RefuseToWrite();
        const auto write = [&](const auto& v) {
            constexpr bool isPlain = kKindOf<std::decay_t<decltype(v)>> != KIND_RECORD;
            if constexpr (isPlain)
                Append(to, label, v);
            return isPlain;
        };
        return std::visit(write, Of(value).content);
    }
    // Takes the parameter as the alternative whose kind it has.
    template <typename... T, typename Choice>
    static bool TakeOneOf(const vorn::cRecordPar& par, Choice& to)
    {
        const int kind = par.GetType(1);
        return (... || (kind == kKindOf<T> && (to.template emplace<T>(Got<T>(par)), true)));
    }
};

class ProcParValueClass final : public ChoiceClass<ProcParValueCore>
{
public:
    using ChoiceClass::ChoiceClass;

    bool IsValid(const void* value) const noexcept override
    {
        return Of(value).content.index() > 0;
    }
    // A value must be valid; any other alternative counts even if it is not.
    bool ReadFrom(void* value, const vorn::cRecordPar* par, Source& around) const override
    {
        auto& to = Of(value).content;
        Source inside(around.uiDepth);
        Source nested(around.uiDepth);
        if (!inside.Open(par)) {
            TraceMissing();
            return false;
        }
        const vorn::cRecordPar* const typePar = inside.Find(label::type);
        const bool isTyped = typePar != nullptr && IsOfKind(*typePar, KIND_UINT);
        const unsigned type = isTyped ? typePar->GetUInt() : 0;
        Source& from = type == 1 ? inside : nested;
        if (type > 1 && !nested.Open(inside.Find(label::value)))
            return false;
        const auto read = [&](auto& v) {
            return ClassOf<std::decay_t<decltype(v)>>().Read(&v, from) || type > 1;
        };
        if (!WithNew(type, to, read))
            to = {};
        return to.index() > 0;
    }
    bool WriteInto(const void* value, RecordBuilder& to) const override
    {
        const auto& from = Of(value).content;
        if (from.index() == 0)
            return RefuseToWrite();
        Append(to, kLabel<label::type>, static_cast<unsigned>(from.index()));
        const auto write = [&to](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, cSmlValue>)
                ClassOf<T>().Write(&v, to, label::value);
            else if constexpr (!std::is_same_v<T, std::monostate>)
                ClassOf<T>().WriteNested(&v, to, label::value);
        };
        std::visit(write, from);
        return true;
    }
};

} // namespace quarn::detail
// NOLINTEND(cppcoreguidelines-virtual-class-destructor)

namespace
{

// The label of a structure in the one that holds it.
constexpr std::string_view LabelIn(const schema::Structure& around,
                                   const schema::Structure& structure, unsigned depth)
{
    std::string_view label;
    for (const schema::Element& element : around) {
        if (element.eType == schema::eTYPE::STRUCTURE && element.pStructure == &structure)
            return element.label;
    }
    for (const schema::Element& element : around) {
        if (depth > 0 && label.empty() && element.pStructure != nullptr)
            label = LabelIn(*element.pStructure, structure, depth - 1);
    }
    return label;
}
// The same in the record of a message. A time, which stands under many labels, has that of a
// parameter's value.
constexpr Label LabelOf(const schema::Structure& structure)
{
    std::string_view label = LabelIn(schema::kProcParValue, structure, 0);
    for (const schema::Structure* around : {&schema::kBeside, &schema::kRecord, &schema::kBody}) {
        if (label.empty())
            label = LabelIn(*around, structure, around == &schema::kBody ? 4 : 0);
    }
    if (label.empty())
        throw "a structure that no message holds";
    return Label(label);
}

template <class C>
constexpr Shape Named(Shape shape, const schema::Structure& structure)
{
    shape.own = LabelOf(structure);
    shape.uiNumber = C::kNumber;
    return shape;
}
template <class C>
inline constexpr auto kRows = Access::Rows<typename C::CoreType>();
// C is a class that is a set of fields.
template <class C, class As = StructureClass>
constexpr As
Structured(const Shape& shape,
           const schema::Structure& structure = Access::kStructure<typename C::CoreType>)
{
    static_assert(kRows<C>.size() <= StructureClass::kMaxRows);
    return As(Named<C>(shape, structure), kRows<C>.data(), kRows<C>.size());
}
template <class C, class As = StructureClass>
constexpr As Entry(const char* name, eFIELDS where = eFIELDS::ENCLOSED,
                   vorn::eLEVEL missingLevel = kDetail,
                   const schema::Structure& structure = Access::kStructure<typename C::CoreType>)
{
    return Structured<C, As>({name, where, missingLevel, true, true}, structure);
}
template <class C>
constexpr auto Listed(const char* name, const ListTexts& texts, vorn::eLEVEL missingLevel = kDetail)
{
    using Class = ListClass<typename C::CoreType>;
    return Class(Named<C>({name, eFIELDS::ENCLOSED, missingLevel}, Class::kStructure), texts);
}

// clang-format off
constexpr std::tuple kDescriptions{
    Entry<cSmlTime, TimeClass>("cSmlTime", eFIELDS::ENCLOSED, kUntraced, schema::kTime),
    Entry<cSmlListType, ListTypeClass>("cSmlListType", eFIELDS::ENCLOSED, kUntraced,
        schema::kListType),
    ValueClass({"cSmlValue", eFIELDS::ENCLOSED, kDetail, true, true, label::value, CLASS_VALUE}),
    Entry<cSmlPeriodEntry>("cSmlPeriodEntry", eFIELDS::EITHER),
    Entry<cSmlTupelEntry>("cSmlTupelEntry"),
    Entry<cSmlHeaderEntry>("cSmlHeaderEntry"),
    Entry<cSmlValueEntry>("cSmlValueEntry"),
    Entry<cSmlListEntry>("cSmlListEntry", eFIELDS::DIRECT),
    Structured<cSmlProfObjPeriodEntry>(
        {"cSmlProfObjPeriodEntry", eFIELDS::ENCLOSED, kError, true, false}),
    Listed<cSmlList>("cSmlList",
        {"<valList>", "valListEntry invalid/empty/wrong type"}),
    Listed<cSmlPeriodList>("cSmlPeriodList",
        {"<period_List>", "period_List_Entry invalid/empty/wrong type", true, true}),
    Listed<cSmlValueList>("cSmlValueList",
        {"<valList>", "value_List_Entry invalid/empty/wrong type", true}),
    Listed<cSmlHeaderList>("cSmlHeaderList",
        {"<valList>", "valListEntry invalid/empty/wrong type", true}),
    Listed<cSmlProfObjPeriodList>("cSmlProfObjPeriodList",
        {"period_List", "pObjPerEntry invalid/empty/wrong type", true}),
    Listed<cSmlTreePath>("cSmlTreePath",
        {"<parTreePath>", "path_Entry invalid/empty/wrong type", false, false, "class invalid"}),
    Listed<cSmlObjList>("cSmlObjList",
        {"<object_List>", "object_List_Entry invalid/empty/wrong type", false, false,
         "class invalid/empty", kProgress}, kUntraced),
    ProcParValueClass(Named<cSmlProcParValue>(
        {"cSmlProcParValue", eFIELDS::ENCLOSED, kDetail}, schema::kProcParValue)),
    Listed<cSmlChildList>("cSmlChildList",
        {"<child_List>", "tree_Entry invalid/empty"}),
    Entry<cSmlTree>("cSmlTree", eFIELDS::EITHER),
    Structured<cSmlOpenReq>({"cSmlOpenReq"}),
    Structured<cSmlOpenResp>({"cSmlOpenRes"}),
    Structured<cSmlGetProfileReq>({"cSmlGetProfileReq"}),
    Structured<cSmlGetProfListRes>({"cSmlGetProfListRes"}),
    Structured<cSmlGetProfPackRes>({"cSmlGetProfPackRes"}),
    Structured<cSmlGetProcParReq>({"cSmlGetProcParReq"}),
    Structured<cSmlGetProcParRes>({"cSmlGetProcParRes"}),
    Structured<cSmlSetProcParReq>({"cSmlSetProcParReq"}),
    Structured<cSmlAttentionRes>({"cSmlAttentionRes"}),
    Structured<cSmlGetListReq>({"cSmlGetListReq"}),
    Structured<cSmlGetListRes>({"cSmlGetListRes"}),
    Structured<cSmlMsgHeader>({"cSmlMsgHeader"}),
    Structured<cSmlMsgStatus>({"cSmlMsgStatus", eFIELDS::ENCLOSED, kUntraced}),
};
// clang-format on

constexpr bool AreInTheOrderOfTheirNumbers()
{
    unsigned count = 0;
    const auto areSo = [&](const auto&... type) {
        return (... && (type.shape.uiNumber == count++)) && count == CLASS_COUNT;
    };
    return std::apply(areSo, kDescriptions);
}
static_assert(AreInTheOrderOfTheirNumbers(), "the descriptions stand in the order of eCLASS");

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

template <const auto& label, class To, class From>
bool CopyField(To& to, const From& from)
{
    auto& field = Access::Field<label>(to);
    const auto& source = Access::Field<label>(from);
    field.bPresent = source.bPresent;
    return TryAssign(field.value, source.value);
}
// Copies fields that both classes have.
template <const auto&... label, class To, class From>
void CopyFields(To& to, const From& from)
{
    if (!(... && CopyField<label>(to, from)))
        throw std::bad_alloc();
}

} // namespace

constexpr decltype(kClasses) quarn::detail::kClasses =
    std::apply([](const auto&... type) { return decltype(kClasses){{&type...}}; }, kDescriptions);

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
    Filled(kNumber, This(), [&](const Class&) {
        CopyFields<label::serverId>(*this, source);
        cSmlPeriodList periods;
        cSmlPeriodEntry period;
        cSmlList list;
        int count = 0;
        bool done = source.GetPerList(periods) && periods.GetListCount(count);
        for (int i = 0; done && i < count; ++i) {
            cSmlListEntry entry;
            done = periods.GetListEntry(period, i);
            CopyFields<label::status, label::valTime>(entry, source);
            CopyFields<label::objName, label::unit, label::scaler, label::value,
                       label::valueSignature>(entry, period);
            done = done && list.SetListEntry(entry);
        }
        if (!done || !Set<label::valList>(list))
            throw std::bad_alloc();
    });
    return *this;
}
