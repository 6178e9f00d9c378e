// Tables that stand as text beside their test: a row a line, its columns set apart by '|'. An
// indented line goes on with the row before it; blank lines and those that begin with '#' tell the
// reader something.
#ifndef TESTS_SUPPORT_ROWS_H
#define TESTS_SUPPORT_ROWS_H

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace test
{

using Row = std::vector<std::string>;

inline std::string Trimmed(const std::string& text)
{
    const std::size_t from = text.find_first_not_of(' ');
    return from == std::string::npos ? ""
                                     : text.substr(from, text.find_last_not_of(' ') + 1 - from);
}

// The rows of a file under tests/, all of that many columns.
inline std::vector<Row> Rows(const std::string& path, std::size_t columns)
{
    std::ifstream file(QUARN_TESTS_DIR "/" + path);
    std::vector<Row> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        if (line[0] != ' ')
            rows.push_back({""});
        Row& row = rows.at(rows.size() - 1);
        for (std::size_t from = 0, to = 0; to != std::string::npos; from = to + 1) {
            to = line.find('|', from);
            const std::string text = Trimmed(line.substr(from, to - from));
            row.back() += (row.back().empty() || text.empty() ? "" : " ") + text;
            if (to != std::string::npos)
                row.emplace_back();
        }
    }
    if (rows.empty())
        throw std::runtime_error(path + " has no rows");
    for (const Row& row : rows) {
        if (row.size() != columns)
            throw std::runtime_error(path + ": columns missing or too many: " + row[0]);
    }
    return rows;
}

} // namespace test

#endif
