// Bytes in any pieces to lines of text. Lines longer than a limit are passed over, not kept.
#ifndef TOOLS_INPUT_LINE_READER_H
#define TOOLS_INPUT_LINE_READER_H

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace tool
{

class cLineReader
{
public:
    static constexpr std::size_t kMaxLine = std::size_t{64} * 1024 * 1024;

    // Calls take(line, whole) for each line that ends in text, without its line feed. whole is
    // false for a line that was too long, of which the beginning is given.
    template <typename Take>
    void Feed(std::string_view text, Take take)
    {
        while (!text.empty()) {
            const std::size_t end = text.find('\n');
            Add(text.substr(0, end));
            if (end == std::string_view::npos)
                return;
            Give(take);
            text.remove_prefix(end + 1);
        }
    }
    // The text has ended: its last line may lack a line feed.
    template <typename Take>
    void End(Take take)
    {
        if (!line.empty())
            Give(take);
    }

private:
    void Add(std::string_view part)
    {
        const std::size_t room = kMaxLine - line.size();
        line.append(part.substr(0, room));
        bTooLong = bTooLong || part.size() > room;
    }
    template <typename Take>
    void Give(Take take)
    {
        take(std::string_view(line), !bTooLong);
        line.clear();
        bTooLong = false;
    }

    std::string line;
    bool bTooLong = false;
};

} // namespace tool

#endif
