// cBuffer, the library's one byte buffer: a fixed block of storage with a read position, a write
// position and a word of frame flags. It never grows. HeapBuffer is a cBuffer whose storage comes
// from the heap.
//
//   begin          read position       write position            begin + size
//     |---- read ----|------ Left() ------|-------- Free() ---------|
//
// Overrun protection is the caller's duty, stated as REQUIRES below. A buffer belongs to one thread
// at a time.
#ifndef QUARN_FOUNDATION_BUFFER_H
#define QUARN_FOUNDATION_BUFFER_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/frame_flags.h"

#include <cstddef>
#include <cstring>

class QUARN_API cBuffer
{
public:
    // An empty buffer over size bytes at storage, which the caller owns and keeps alive. kind is a
    // tag of the caller's that the library never reads (HeapBuffer passes 2).
    cBuffer(char* storage, long size, int flags, int kind) noexcept
        : pcBegin(storage), pcRead(storage), pcWrite(storage), lSize(size), iFlags(flags),
          iKind(kind)
    {
    }
    virtual ~cBuffer(); // leaves the storage alone
    cBuffer(const cBuffer&) = delete;
    cBuffer& operator=(const cBuffer&) = delete;

    long Free() const noexcept { return lSize - (pcWrite - pcBegin); } // bytes that can be written
    long Left() const noexcept { return pcWrite - pcRead; }            // bytes not yet read

    // REQUIRES: Free() >= 1.
    void PutQuick(char c) noexcept { *pcWrite++ = c; }
    // REQUIRES: Left() >= 1. The byte, 0 to 255.
    unsigned char GetQuick() noexcept { return static_cast<unsigned char>(*pcRead++); }

    // Appends n bytes at once. REQUIRES: 0 <= n <= Free(), and p does not point into the free room.
    void Put(const void* p, long n) noexcept
    {
        if (n > 0)
            std::memcpy(pcWrite, p, static_cast<std::size_t>(n));
        pcWrite += n;
    }
    // Counts n bytes of the storage behind the write position, already in place, as written.
    // REQUIRES: 0 <= n <= Free().
    void Commit(long n) noexcept { pcWrite += n; }
    // Passes over n bytes. REQUIRES: 0 <= n <= Left().
    void Skip(long n) noexcept { pcRead += n; }

    // Takes the read position back by one and returns that byte (0 to 255), or changes nothing and
    // returns -1 at the begin.
    int UnGet() noexcept
    {
        return pcRead <= pcBegin ? -1 : static_cast<int>(static_cast<unsigned char>(*--pcRead));
    }
    char* ReadPtr() const noexcept { return pcRead; }
    void ReadRewind() noexcept { pcRead = pcBegin; } // what is written stays
    void Clear() noexcept                            // no bytes, no flags
    {
        pcRead = pcWrite = pcBegin;
        iFlags = 0;
    }

    void SetFlags(int f) noexcept { iFlags |= f; } // adds flags; only Clear removes any
    bool TestFlagsAnd(int f) const noexcept { return (iFlags & f) == f; } // every bit of f is set
    int GetFlags() const noexcept { return iFlags; }

    virtual int GetSize() const noexcept; // of the buffer object itself, not of its storage
    virtual void Release() noexcept;      // cBuffer: nothing, the storage is the caller's

protected:
    char* pcBegin;
    char* pcRead;
    char* pcWrite;
    long lSize;
    int iFlags;
    int iKind;
};

class QUARN_API HeapBuffer : public cBuffer
{
public:
    // Allocates size bytes; throws std::bad_alloc when there are none. A negative size counts as 0.
    HeapBuffer(long size, int flags);
    ~HeapBuffer() override; // does not free the storage: call Release first, then delete

    void Release() noexcept override; // frees the storage; a second call does nothing

    static void* operator new(std::size_t size);
    static void operator delete(void* p) noexcept;
};

#endif
