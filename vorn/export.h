// Symbol visibility of libvorn. The library is built with hidden symbols; what carries VORN_API is
// its interface.
#ifndef VORN_EXPORT_H
#define VORN_EXPORT_H

#if defined(__GNUC__)
#define VORN_API __attribute__((visibility("default")))
#else
#define VORN_API
#endif

#endif
