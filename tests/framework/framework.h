// A framework as a host may have one already: the operations that the library asks for, made of
// strings and vectors. Records are copied whole; that is slow, and right. It has begin, end and
// GetName as well, without a promise on the names: each ends where its memory ends.
#ifndef TESTS_FRAMEWORK_FRAMEWORK_H
#define TESTS_FRAMEWORK_FRAMEWORK_H

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace vorn
{

class cRecord;

class cObject
{
public:
    virtual ~cObject() = default;
};

class cRecordPar : public cObject
{
public:
    bool IsValid() const { return iType != 0; }
    bool IsEmpty() const { return iType == 0; }
    int GetType(int) const { return iType; }
    unsigned GetUInt() const { return static_cast<unsigned>(ullNumber); }
    int GetSInt() const { return static_cast<int>(ullNumber); }
    unsigned long long GetUInt64() const { return ullNumber; }
    long long GetSInt64() const { return static_cast<long long>(ullNumber); }
    bool GetBool() const { return ullNumber != 0; }
    const char* GetData() const { return iType == 5 ? data.data() : nullptr; }
    int GetSize() const { return iType == 5 ? static_cast<int>(data.size()) : 0; }
    bool GetRecord(cRecord& out) const;
    const char* GetName() const { return name.data(); }
    const cRecordPar* begin() const { return pars.data(); }
    const cRecordPar* end() const { return pars.data() + pars.size(); }
    std::string ToString() const;

    std::vector<char> name;
    int iType = 0;
    unsigned long long ullNumber = 0;
    std::string data;
    std::vector<cRecordPar> pars; // of a record
    std::size_t uiPlace = 0;
};

class cRecord
{
public:
    void Create() { pars.clear(); }
    void AppendUIntPar(const char* n, unsigned v, int) { Append(n, 3).ullNumber = v; }
    void AppendSIntPar(const char* n, int v, int) { Append(n, 2).ullNumber = Bits(v); }
    void AppendUInt64Par(const char* n, unsigned long long v, int) { Append(n, 9).ullNumber = v; }
    void AppendSInt64Par(const char* n, long long v, int) { Append(n, 8).ullNumber = Bits(v); }
    void AppendBoolPar(const char* n, bool v, int) { Append(n, 10).ullNumber = v ? 1 : 0; }
    void AppendRecordPar(const char* n, const cRecord& r, int)
    {
        std::vector<cRecordPar> copy = r.pars; // r may be this record
        Append(n, 6).pars = std::move(copy);
    }
    void AppendDataPar(const char* n, const void* p, int size, int)
    {
        std::string copy;
        if (p != nullptr && size > 0)
            copy.assign(static_cast<const char*>(p), static_cast<std::size_t>(size));
        Append(n, 5).data = std::move(copy);
    }
    void DeletePar(const char* n, int, int)
    {
        const std::size_t place = Find(n, 0);
        if (place < pars.size())
            pars.erase(pars.begin() + static_cast<std::ptrdiff_t>(place));
    }

    cRecordPar GetFirstPar(const char* n, int, int) const { return At(Find(n, 0)); }
    void SeekNextPar(cRecordPar& par, const char* n, int, int) const
    {
        if (par.IsValid())
            par = At(Find(n, par.uiPlace + 1));
    }
    const cRecordPar* begin() const { return pars.data(); }
    const cRecordPar* end() const { return pars.data() + pars.size(); }
    int GetParCount(const char* n, int, int) const
    {
        int count = 0;
        for (std::size_t i = Find(n, 0); i < pars.size(); i = Find(n, i + 1))
            count++;
        return count;
    }
    std::string ToString() const { return ToString2(0, 0); }
    std::string ToString2(unsigned, unsigned) const
    {
        std::string text;
        for (const cRecordPar& par : pars)
            text += (text.empty() ? "" : ", ") + par.ToString();
        return "{" + text + "}";
    }

    std::size_t Find(const char* n, std::size_t from) const
    {
        while (from < pars.size() && n != nullptr && std::strcmp(pars[from].GetName(), n) != 0)
            from++;
        return from;
    }
    std::vector<cRecordPar> pars;

private:
    static unsigned long long Bits(long long v) { return static_cast<unsigned long long>(v); }
    cRecordPar& Append(const char* n, int type)
    {
        pars.emplace_back();
        pars.back().name.assign(n, n + std::strlen(n) + 1);
        pars.back().iType = type;
        return pars.back();
    }
    cRecordPar At(std::size_t place) const
    {
        cRecordPar par;
        if (place < pars.size())
            par = pars[place];
        par.uiPlace = place;
        return par;
    }
};

inline bool cRecordPar::GetRecord(cRecord& out) const
{
    if (iType != 6)
        return false;
    std::vector<cRecordPar> copy = pars; // this may be a parameter of out
    out.pars = std::move(copy);
    return true;
}

inline std::string cRecordPar::ToString() const
{
    std::string text;
    if (iType == 6) {
        cRecord record;
        GetRecord(record);
        text = record.ToString();
    } else if (iType == 5) {
        static constexpr char kDigits[] = "0123456789abcdef";
        for (const char c : data) {
            text += kDigits[static_cast<unsigned char>(c) >> 4];
            text += kDigits[c & 0x0F];
        }
    } else if (iType == 10) {
        text = GetBool() ? "true" : "false";
    } else {
        text = iType == 2 || iType == 8 ? std::to_string(GetSInt64()) : std::to_string(ullNumber);
    }
    return GetName() + ("=" + text);
}

class cRecordPath
{
public:
    void AddLevel(const char* name, const cRecord& key) { levels.emplace_back(name, key); }
    std::vector<std::pair<std::string, cRecord>> levels;
};

class cMsg
{
public:
    cMsg() = default;
    explicit cMsg(cRecord r) : record(std::move(r)) {}
    cRecord& GetRecord() { return record; }
    const cRecord& GetRecord() const { return record; }

private:
    cRecord record;
};

enum eLEVEL : int {};
enum eOUTPUT : int {};

class cUnit : public cObject
{
public:
    cUnit(const char* name, eLEVEL level, eOUTPUT) : iLevel(level), pcName(name) {}
    int iLevel;
    const char* pcName;
};

inline std::string FormatString(const char* format, ...)
{
    char text[1000];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

inline void _Trace(cUnit* unit, eLEVEL level, const std::string& text)
{
    std::fprintf(stderr, "%s[%d]: %s\n", unit->pcName, static_cast<int>(level), text.c_str());
}

inline unsigned short initCRC16() { return 0xFFFF; }

inline unsigned short addByte2CRC16(unsigned char b, unsigned short crc)
{
    unsigned reg = crc ^ b;
    for (int bit = 0; bit < 8; bit++)
        reg = (reg & 1) != 0 ? (reg >> 1) ^ 0x8408 : reg >> 1;
    return static_cast<unsigned short>(reg);
}

inline unsigned short createCRC16(const char* data, int len, unsigned short crc)
{
    for (int i = 0; i < len; i++)
        crc = addByte2CRC16(static_cast<unsigned char>(data[i]), crc);
    return static_cast<unsigned short>(~crc);
}

} // namespace vorn

#endif
