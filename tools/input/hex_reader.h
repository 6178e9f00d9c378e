// Hex text to bytes, in any pieces: white space is ignored, everything else must be a digit.
#ifndef TOOLS_INPUT_HEX_READER_H
#define TOOLS_INPUT_HEX_READER_H

#include <string>
#include <string_view>

namespace tool
{

inline bool IsBlank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The digit's value, or -1.
int HexDigit(char c) noexcept;

class cHexReader
{
public:
    // Appends the bytes that text completes to bytes. False when a character is no hex digit; what
    // stands before it has been read, and nothing more will be.
    bool Read(std::string_view text, std::string& bytes);

    // The text ends with half a byte.
    bool HasHalfByte() const noexcept { return iHigh >= 0; }
    // Characters read so far: after a failure, where the bad one stands.
    unsigned long long Position() const noexcept { return ullPosition; }

private:
    int iHigh = -1; // first digit of a byte whose second one is yet to come
    unsigned long long ullPosition = 0;
};

} // namespace tool

#endif
