// What an explanation is made of: one list of annotations, each some bytes of the input and what
// they are. The annotations of an input stand in the order of its bytes and cover each byte once;
// bytes of a structure's content are annotations of greater depth behind it. Whoever writes them
// down (text, page) knows nothing of frames or SML.
#ifndef TOOLS_EXPLAIN_ANNOTATION_H
#define TOOLS_EXPLAIN_ANNOTATION_H

#include <cstdint>
#include <string>
#include <vector>

namespace tool
{

enum class eWHAT : unsigned char {
    TRANSPORT, // escape sequences
    PADDING,   // bytes without meaning
    CHECKSUM,
    STRUCTURE, // the type-length field of a list
    VALUE,
    ABSENT, // an optional field that is not set
    UNKNOWN // outside of frames, or not to be taken apart
};

struct Annotation {
    std::uint64_t ullOffset = 0; // of the first byte in the input, from 0
    std::string bytes;           // never empty
    unsigned uiTl = 0;           // how many of them are the type-length field
    unsigned uiDepth = 0;
    eWHAT eWhat = eWHAT::UNKNOWN;
    std::string name;   // of the field, or what the bytes are; empty where nothing gives it one
    std::string value;  // as the field's own: 1-0:1.8.0*255, 14798112.9 Wh
    std::string type;   // how it is encoded: "unsigned, 2 bytes"
    std::string note;   // other readings of the same bytes
    std::string damage; // why the place is damaged; empty when it is not
};

// A frame, or bytes between frames.
struct Section {
    std::uint64_t ullOffset = 0;
    std::string title;
    std::string damage; // of the section as a whole
    std::vector<Annotation> items;
};

inline void AddDamage(std::string& damage, const std::string& reason)
{
    damage += (damage.empty() ? "" : "; ") + reason;
}

class cExplanationWriter
{
public:
    virtual ~cExplanationWriter() = default;

    virtual void Begin(const std::string& input) = 0; // the name of the next input
    virtual void Write(const Section& section) = 0;
    virtual void Finish() = 0; // no input follows; not called when one is missing

    // How many bytes of input it can take; there is no such number by default.
    virtual std::uint64_t Limit() const noexcept { return UINT64_MAX; }
};

} // namespace tool

#endif
