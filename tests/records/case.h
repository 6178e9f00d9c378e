// A class of the wing as the tests see it: its fields as text, and the getters that tell them. All
// that a test wants of a class goes through here, whatever the class.
#ifndef TESTS_RECORDS_CASE_H
#define TESTS_RECORDS_CASE_H

#include "tests/support/parse.h"
#include "tests/support/record_text.h"
#include "tests/support/trace_capture.h"

#include <gtest/gtest.h>
#include <ostream>
#include <sstream>
#include <tuple>

namespace vorn
{
inline void PrintTo(const cRecord& record, std::ostream* out) { *out << record.ToString(); }
} // namespace vorn

namespace test
{

using Lines = std::vector<std::string>;

constexpr unsigned kCopiesValid = 1; // operator= takes over a valid object only
constexpr unsigned kWritesValid = 2; // so does ToRecord
constexpr unsigned kYieldsValid = 4; // and the getters
constexpr unsigned kDirect = 8;      // the fields are read without a record around them
constexpr unsigned kEntry = kCopiesValid | kWritesValid;
constexpr unsigned kStepsByLabel = 16; // a list that says nothing on elements of other labels

// The record that holds fields under label; with no label, the fields themselves.
inline vorn::cRecord Enclosed(const std::string& label, const std::string& fields)
{
    return Rec(label.empty() ? fields : label + "={" + fields + "}");
}

// Of an object, its copy and what it was assigned to: the fields that the getters yield, and
// "valid" if it is; and what the object writes.
struct Outcome {
    vorn::cRecord fields, copied, assigned, written;
};

// The lines that a class traces.
struct Texts {
    std::string missing, refused; // no record to read; not written since not valid
    std::string empty, fault;     // of lists: no element; a parameter that is none
};

struct Row {
    // In front of each field: * required, & required and yielded with the other &, + present and
    // empty when missing, - without a getter, ~ one of a triple.
    Row(std::string n, std::string l, unsigned r, Texts t, const std::string& itsFields)
        : name(std::move(n)), label(std::move(l)), rules(r), texts(std::move(t))
    {
        std::istringstream in(itsFields);
        std::ptrdiff_t depth = 0;
        for (std::string word; in >> word;) {
            if (depth == 0) {
                marks += std::string("*&+-~").find(word[0]) != std::string::npos ? word[0] : ' ';
                word.erase(0, marks.back() == ' ' ? 0 : 1);
                labels.push_back(word.substr(0, word.find('=')));
                fields.emplace_back();
            }
            fields.back() += word + ' ';
            text += word + ' ';
            depth += std::count(word.begin(), word.end(), '{');
            depth -= std::count(word.begin(), word.end(), '}');
        }
    }
    virtual ~Row() = default;

    // A record as the class reads it, and one with all fields.
    vorn::cRecord Input(const std::string& pars) const
    {
        return Enclosed((rules & kDirect) != 0 ? "" : label, pars);
    }
    vorn::cRecord Sample() const { return Input(text); }
    // What becomes of an object read from input; objects read from sample are assigned to.
    virtual Outcome Run(const vorn::cRecord& input, const vorn::cRecord& sample) const = 0;

    std::string name, label;
    unsigned rules;
    Texts texts;
    std::string marks, text; // the text of all fields
    Lines fields, labels;
};

// Appends a value as the library writes it.
template <class T>
void Append(vorn::cRecord& to, const std::string& label, const T& v)
{
    if constexpr (std::is_arithmetic_v<T>) {
        constexpr bool kIsWide = sizeof v == 8, kIsSigned = std::is_signed_v<T>;
        const char kind = std::is_same_v<T, bool> ? 'b' : "uUiI"[kIsSigned * 2 + kIsWide];
        const std::string text = label + '=' + kind + std::to_string(v);
        std::string_view rest = text;
        AppendPars(to, rest);
    } else if constexpr (std::is_same_v<T, std::string>) {
        to.AppendDataPar(label.c_str(), v.data(), static_cast<int>(v.size()), 0);
    } else if constexpr (std::is_same_v<T, cSmlTime>) {
        v.ToRecord(to, label.c_str());
    } else {
        v.ToRecord(to);
    }
}

// What object writes; an empty record when it refuses.
template <class C>
vorn::cRecord Written(const C& object)
{
    vorn::cRecord record;
    const bool done = object.ToRecord(record);
    EXPECT_EQ(done, record != vorn::cRecord());
    return record;
}

template <class C, typename... Getters>
struct Case final : Row {
    using Class = C;

    Case(const std::string& n, const char* l, unsigned r, const Texts& t, const std::string& f,
         Getters... g)
        : Row(n, l, r, t, f), getters(g...)
    {
    }

    vorn::cRecord Yield(const C& object) const
    {
        vorn::cRecord out;
        std::size_t at = 0;
        std::apply([&](auto... getter) { (Take(out, object, at, getter), ...); }, getters);
        if (object.IsValid())
            Append(out, "valid", true);
        return out;
    }
    // Appends what a getter yields, under the next labels or the last one.
    template <class Owner, typename... T>
    void Take(vorn::cRecord& out, const C& object, std::size_t& at,
              bool (Owner::*getter)(T&...) const noexcept) const
    {
        std::tuple<T...> values;
        const auto get = [&](T&... v) { return (object.*getter)(v...); };
        const bool got = std::apply(get, values);
        const auto append = [&](const auto& v) {
            const std::string& next = labels[std::min(at++, labels.size() - 1)];
            if (got)
                Append(out, next, v);
        };
        std::apply([&](T&... v) { (append(v), ...); }, values);
    }
    // Appends what a class yields in a way of its own.
    void Take(vorn::cRecord& out, const C& object, std::size_t&,
              void (*yield)(vorn::cRecord&, const C&)) const
    {
        yield(out, object);
    }
    Outcome Run(const vorn::cRecord& input, const vorn::cRecord& sample) const override
    {
        const C object(input);
        const C copy(object);
        C assigned(sample), moved(sample);
        assigned = object;
        moved = C(input);
        EXPECT_EQ(Yield(moved), Yield(assigned));
        moved.Clear();
        EXPECT_EQ(Yield(moved), vorn::cRecord());
        return {Yield(object), Yield(copy), Yield(assigned), Written(object)};
    }

    std::tuple<Getters...> getters;
};

// The classes without their types (classes_test.cpp), and the one of that name.
std::vector<const Row*> Cases();
inline const Row& CaseOf(const std::string& name)
{
    const std::vector<const Row*> all = Cases();
    return **std::find_if(all.begin(), all.end(), [&](const Row* r) { return r->name == name; });
}

} // namespace test

#endif
