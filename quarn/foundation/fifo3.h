// Fifo3: the transport decoder's look-behind window, a ring of at most three bytes in which the
// decoder holds back what may turn out to be padding.
#ifndef QUARN_FOUNDATION_FIFO3_H
#define QUARN_FOUNDATION_FIFO3_H

class Fifo3
{
public:
    static constexpr int kMax = 3;

    // REQUIRES: Count() < 3.
    void Put(unsigned char b) noexcept
    {
        aucStore[iWrite] = b;
        iWrite = (iWrite + 1) % kSlots;
    }
    // The oldest byte. REQUIRES: Count() > 0.
    unsigned char Get() noexcept
    {
        const unsigned char b = aucStore[iRead];
        iRead = (iRead + 1) % kSlots;
        return b;
    }
    // Takes the oldest byte out and puts b in. REQUIRES: Count() > 0.
    unsigned char Rot(unsigned char b) noexcept
    {
        const unsigned char oldest = Get();
        Put(b);
        return oldest;
    }
    int Count() const noexcept { return (iWrite - iRead + kSlots) % kSlots; }
    void Clear() noexcept { iWrite = iRead = 0; }

private:
    static constexpr int kSlots = 4; // one more than it holds: equal indices mean empty

    unsigned char aucStore[kSlots] = {};
    int iWrite = 0;
    int iRead = 0;
};

#endif
