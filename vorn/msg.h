// The framework's message object: one record on its way between the parts of a host.
#ifndef VORN_MSG_H
#define VORN_MSG_H

#include "vorn/record.h"

#include <utility>

namespace vorn
{

class cMsg
{
public:
    cMsg() noexcept = default;
    explicit cMsg(cRecord record) noexcept : recContent(std::move(record)) {}

    cRecord& GetRecord() noexcept { return recContent; }
    const cRecord& GetRecord() const noexcept { return recContent; }

private:
    cRecord recContent;
};

} // namespace vorn

#endif
