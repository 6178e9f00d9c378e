// Printable dumps of records and parameters, for trace lines and people. Nesting is followed to a
// fixed depth, so that no record, however deep, can exhaust the stack here.
#include "vorn/record.h"

#include <algorithm>

namespace vorn
{
namespace
{

class Dumper
{
public:
    Dumper(std::string& out, unsigned int indent, unsigned int maxDepth)
        : strOut(out), uiIndent(indent),
          uiMaxDepth(maxDepth == 0 ? cRecord::kMaxDumpDepth
                                   : std::min(maxDepth, cRecord::kMaxDumpDepth))
    {
    }

    void Record(const cRecord& record, unsigned int depth)
    {
        if (record.begin() == record.end()) {
            strOut += "{}";
            return;
        }
        if (depth == uiMaxDepth) {
            strOut += "...";
            return;
        }
        strOut += '{';
        bool first = true;
        for (const cRecordPar& par : record) {
            if (!first)
                strOut += uiIndent != 0 ? "," : ", ";
            first = false;
            NewLine(depth + 1);
            Par(par, depth + 1);
        }
        NewLine(depth);
        strOut += '}';
    }

    void Par(const cRecordPar& par, unsigned int depth)
    {
        strOut += par.GetName();
        strOut += '=';
        switch (par.GetType(1)) {
        case TYPE_SINT:
        case TYPE_SINT64:
            strOut += std::to_string(par.GetSInt64());
            break;
        case TYPE_UINT:
        case TYPE_UINT64:
            strOut += std::to_string(par.GetUInt64());
            break;
        case TYPE_BOOL:
            strOut += par.GetBool() ? "true" : "false";
            break;
        case TYPE_DATA:
            Hex(par.GetData(), static_cast<std::size_t>(par.GetSize()));
            break;
        case TYPE_RECORD: {
            cRecord nested;
            par.GetRecord(nested);
            Record(nested, depth);
            break;
        }
        default:
            break;
        }
    }

private:
    void NewLine(unsigned int depth)
    {
        if (uiIndent == 0)
            return;
        strOut += '\n';
        strOut.append(std::size_t{depth} * uiIndent, ' ');
    }

    void Hex(const char* data, std::size_t size)
    {
        static constexpr char kDigits[] = "0123456789abcdef";
        for (std::size_t i = 0; i < size; ++i) {
            const auto byte = static_cast<unsigned char>(data[i]);
            strOut += kDigits[byte >> 4];
            strOut += kDigits[byte & 0x0FU];
        }
    }

    std::string& strOut;
    unsigned int uiIndent;
    unsigned int uiMaxDepth;
};

} // namespace

std::string cRecordPar::ToString() const
{
    std::string text;
    if (IsValid())
        Dumper(text, 0, 0).Par(*this, 0);
    return text;
}

std::string cRecord::ToString() const { return ToString2(0, 0); }

std::string cRecord::ToString2(unsigned int indent, unsigned int maxDepth) const
{
    std::string text;
    Dumper(text, indent, maxDepth).Record(*this, 0);
    return text;
}

} // namespace vorn
