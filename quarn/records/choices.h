// The two classes that are a choice: the value, and the value of a tree's node.
#ifndef QUARN_RECORDS_CHOICES_H
#define QUARN_RECORDS_CHOICES_H

#include "quarn/records/engine.h"

namespace quarn::detail
{

template <class Core>
class ChoiceClass : public Class
{
public:
    using Class::Class;

    void Clear(void* choice) const noexcept final { Of(choice) = Core(); }
    void Copy(void* to, const void* from) const override
    {
        CopyContent(Of(to).content, Of(from).content);
    }

protected:
    static Core& Of(void* choice) { return *static_cast<Core*>(choice); }
    static const Core& Of(const void* choice) { return *static_cast<const Core*>(choice); }

private:
    template <typename... T>
    static void CopyContent(std::variant<std::monostate, T...>& to,
                            const std::variant<std::monostate, T...>& from)
    {
        const auto isCopied = [&](const auto* v) {
            using Held = std::decay_t<decltype(*v)>;
            if (v == nullptr)
                return false;
            if constexpr (kKindOf<Held> == KIND_RECORD)
                ClassOf<Held>().Copy(&to.template emplace<Held>(), v);
            else
                to.template emplace<Held>() = *v;
            return true;
        };
        if (!(... || isCopied(std::get_if<T>(&from))))
            to = {};
    }
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
        Source inside(around.uiDepth);
        if (inside.Open(par))
            to.bValid = ClassOf<cSmlListType>().Read(&to.content.emplace<cSmlListType>(), inside);
        else
            to.bValid = TakeOneOf<long long, std::string, unsigned, unsigned long long, int, bool>(
                *par, to.content);
        return to.bValid;
    }
    bool WriteInto(const void*, RecordBuilder&) const override { return false; }
    bool Write(const void* value, RecordBuilder& to, const Label& label) const override
    {
        return WriteAsPar(value, to, label);
    }
    bool WriteTo(vorn::cRecord& target, const void* value, const char*) const override
    {
        return WriteAsPar(value, target, shape.own);
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
    bool WriteAsPar(const void* value, Target& to, const Label& label) const
    {
        if (!IsValid(value))
            return RefuseToWrite();
        const auto write = [&](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, cSmlListType>)
                ClassOf<T>().WriteNested(&v, to, label);
            else if constexpr (!std::is_same_v<T, std::monostate>)
                Append(to, label, v);
        };
        std::visit(write, Of(value).content);
        return true;
    }
    // Takes the parameter as the alternative whose kind it has.
    template <typename... T, typename Choice>
    static bool TakeOneOf(const vorn::cRecordPar& par, Choice& to)
    {
        const int kind = par.GetType(1);
        return (... || (kind == kKindOf<T> && (Get(par, to.template emplace<T>()), true)));
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
    bool ReadFrom(void* value, const vorn::cRecordPar* par, Source& around) const override
    {
        auto& to = Of(value).content;
        Source inside(around.uiDepth);
        Source nested(around.uiDepth);
        if (!inside.Open(par)) {
            TraceMissing();
            return false;
        }
        unsigned type = 0;
        const vorn::cRecordPar* const typePar = inside.Find(label::type);
        if (typePar != nullptr && IsOfKind(*typePar, KIND_UINT))
            Get(*typePar, type);
        if (type == 1 && !ClassOf<cSmlValue>().Read(&to.emplace<cSmlValue>(), inside))
            to = {};
        else if (type > 1 && nested.Open(inside.Find(label::value)))
            ReadNested(type, to, nested);
        return to.index() > 0;
    }
    bool WriteInto(const void* value, RecordBuilder& to) const override
    {
        const auto& from = Of(value).content;
        if (from.index() == 0)
            return RefuseToWrite();
        Append(to, kLabel<label::type>, static_cast<unsigned>(from.index()));
        if (const auto* v = std::get_if<cSmlValue>(&from))
            return ClassOf<cSmlValue>().Write(v, to, label::value);
        to.Open();
        if (const auto* period = std::get_if<cSmlPeriodEntry>(&from))
            ClassOf<cSmlPeriodEntry>().Write(period, to, label::SmlPeriodEntry);
        else if (const auto* tupel = std::get_if<cSmlTupelEntry>(&from))
            ClassOf<cSmlTupelEntry>().Write(tupel, to, label::SmlTupelEntry);
        else if (const auto* time = std::get_if<cSmlTime>(&from))
            ClassOf<cSmlTime>().Write(time, to, label::SmlTime);
        else if (const auto* entry = std::get_if<cSmlListEntry>(&from))
            ClassOf<cSmlListEntry>().WriteInto(entry, to);
        to.AppendRecordPar(kLabel<label::value>, to.Close(), 0);
        return true;
    }

private:
    // The alternative counts even if it is not valid itself.
    template <class Choice>
    static void ReadNested(unsigned type, Choice& to, Source& from)
    {
        if (type == 2)
            ClassOf<cSmlPeriodEntry>().Read(&to.template emplace<cSmlPeriodEntry>(), from);
        else if (type == 3)
            ClassOf<cSmlTupelEntry>().Read(&to.template emplace<cSmlTupelEntry>(), from);
        else if (type == 4)
            ClassOf<cSmlTime>().ReadFrom(&to.template emplace<cSmlTime>(),
                                         from.Find(label::SmlTime), from);
        else if (type == 5)
            ClassOf<cSmlListEntry>().Read(&to.template emplace<cSmlListEntry>(), from);
    }
};

} // namespace quarn::detail

#endif
