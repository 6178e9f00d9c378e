// The two classes that are a choice: the value, and the value of a tree's node.
#ifndef QUARN_RECORDS_CHOICES_H
#define QUARN_RECORDS_CHOICES_H

#include "quarn/records/engine.h"

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
    // Of a list type only: other values are a parameter themselves.
    bool WriteInto(const void* value, RecordBuilder& to) const override
    {
        const auto* listType = std::get_if<cSmlListType>(&Of(value).content);
        return ClassOf<cSmlListType>().Write(listType, to, label::smlList);
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

#endif
