// The framework that the library asks for, and nothing beyond it: the library must compile against
// this as it does against the framework beside it.
#ifndef TESTS_FOUNDATION_CONTRACT_H
#define TESTS_FOUNDATION_CONTRACT_H

#include <string>

namespace vorn
{

enum eLEVEL : int {};
enum eOUTPUT : int {};

class cObject
{
public:
    virtual ~cObject();
    virtual std::string ToString() const = 0;
};

class cRecord;

class cRecordPar : public cObject
{
public:
    cRecordPar();
    cRecordPar(const cRecordPar& other);
    cRecordPar& operator=(const cRecordPar& other);
    ~cRecordPar() override;
    bool IsValid() const;
    bool IsEmpty() const;
    int GetType(int) const;
    unsigned int GetUInt() const;
    int GetSInt() const;
    unsigned long long GetUInt64() const;
    long long GetSInt64() const;
    bool GetBool() const;
    const char* GetData() const;
    int GetSize() const;
    bool GetRecord(cRecord& out) const;
    std::string ToString() const override;
};

class cRecord
{
public:
    cRecord();
    cRecord(const cRecord& other);
    cRecord& operator=(const cRecord& other);
    ~cRecord();
    void Create();
    void AppendUIntPar(const char* name, unsigned int v, int);
    void AppendSIntPar(const char* name, int v, int);
    void AppendUInt64Par(const char* name, unsigned long long v, int);
    void AppendSInt64Par(const char* name, long long v, int);
    void AppendBoolPar(const char* name, bool v, int);
    void AppendDataPar(const char* name, const void* p, int size, int);
    void AppendRecordPar(const char* name, const cRecord& r, int);
    void DeletePar(const char* name, int, int);
    cRecordPar GetFirstPar(const char* name, int, int) const;
    int GetParCount(const char* name, int, int) const;
    bool SeekNextPar(cRecordPar& par, const char* name, int, int) const;
    std::string ToString() const;
    std::string ToString2(unsigned int, unsigned int) const;
};

class cRecordPath
{
public:
    cRecordPath();
    cRecordPath(const cRecordPath& other);
    ~cRecordPath();
    void AddLevel(const char* name, const cRecord& key);
};

class cMsg
{
public:
    cRecord& GetRecord();
    const cRecord& GetRecord() const;
};

class cUnit : public cObject
{
public:
    cUnit(const char* name, eLEVEL level, eOUTPUT output);
    ~cUnit() override;
    std::string ToString() const override;
    int iLevel;
};

std::string FormatString(const char* format, ...);
void _Trace(cUnit* unit, eLEVEL level, const char* text);
void _Trace(cUnit* unit, eLEVEL level, const std::string& text);

unsigned short initCRC16();
unsigned short addByte2CRC16(unsigned char b, unsigned short crc);
unsigned short createCRC16(const char* data, int size, unsigned short crc);

} // namespace vorn

#endif
