// Messages that the parser refuses, for the tests of the parser and of explanations.
#ifndef TESTS_SUPPORT_REFUSALS_H
#define TESTS_SUPPORT_REFUSALS_H

#include "tests/support/message.h"
#include "tests/support/rows.h"

namespace test
{

// The rows of parser/refusals.txt, and for each body two more: no list, and one of 14 elements.
inline std::vector<Row> Refusals()
{
    std::vector<Row> rows = Rows("parser/refusals.txt", 5);
    for (const auto& message : quarn::schema::kMessages) {
        std::string name(message.label.substr(3));
        if (name.substr(name.size() - 3) == "Res")
            name += 'p';
        const std::string tag = {static_cast<char>(message.uiTag >> 8),
                                 static_cast<char>(message.uiTag)};
        rows.push_back({name, '@' + ToHex(tag) + "62", "27", name + ":Seq-Type!", ""});
        rows.push_back({name, '@' + ToHex(tag) + "7E", "28", name + ":Seq-Cnt!", ""});
    }
    return rows;
}
// The bytes of such a row.
inline std::string Refused(const Row& row)
{
    return row[1][0] == '@' ? Head(row[1].substr(1, 4)) + Hex(row[1].substr(5)) : Hex(row[1]);
}

} // namespace test

#endif
