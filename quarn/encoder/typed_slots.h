// A class whose fields stand in the slots of a list, declared by the types of its fields in slot
// order. Structures and message bodies are made of it.
#ifndef QUARN_ENCODER_TYPED_SLOTS_H
#define QUARN_ENCODER_TYPED_SLOTS_H

#include <cstddef>
#include <tuple>

namespace quarn::detail
{

// Base is built from an identifier and the number of slots, and offers SetListElement and
// GetListElement.
template <typename Base, typename... Fields>
class TypedSlots : public Base
{
protected:
    template <std::size_t I>
    using Field = std::tuple_element_t<I, std::tuple<Fields...>>;

    explicit TypedSlots(unsigned id) noexcept : Base(id, sizeof...(Fields)) {}
    TypedSlots(unsigned id, Fields*... fields) noexcept : TypedSlots(id)
    {
        unsigned i = 0;
        (this->SetListElement(fields, i++), ...);
    }

    template <std::size_t I>
    int Set(Field<I>* e) noexcept
    {
        return this->SetListElement(e, I);
    }
    template <std::size_t I>
    Field<I>* Get() const noexcept
    {
        return static_cast<Field<I>*>(this->GetListElement(I));
    }
};

} // namespace quarn::detail

#endif
