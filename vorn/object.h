// The polymorphic base of the framework's value objects.
#ifndef VORN_OBJECT_H
#define VORN_OBJECT_H

#include "vorn/export.h"

#include <string>

namespace vorn
{

class VORN_API cObject
{
public:
    cObject() noexcept = default;
    cObject(const cObject&) noexcept = default;
    cObject(cObject&&) noexcept = default;
    cObject& operator=(const cObject&) noexcept = default;
    cObject& operator=(cObject&&) noexcept = default;
    virtual ~cObject();

    // A printable form for trace lines; never parsed by anyone.
    virtual std::string ToString() const = 0;
};

} // namespace vorn

#endif
