// A source over a descriptor, which is waited for together with the interrupt.
#ifndef TOOLS_INPUT_DESCRIPTOR_H
#define TOOLS_INPUT_DESCRIPTOR_H

#include "tools/input/source.h"

#include <string>

namespace tool
{

class cDescriptorSource : public cSource
{
public:
    // own: the descriptor is closed with the source.
    cDescriptorSource(std::string sourceName, int fd, bool own);
    ~cDescriptorSource() override;
    cDescriptorSource(const cDescriptorSource&) = delete;
    cDescriptorSource& operator=(const cDescriptorSource&) = delete;

    bool Ready() override;
    long Read(unsigned char* data, std::size_t size, long timeout) override;
    std::uint64_t Size() const noexcept override;

private:
    int iFd;
    bool bOwn;
};

} // namespace tool

#endif
