// Symbol visibility of libquarn. The library is built with hidden symbols; what carries QUARN_API
// is its interface.
#ifndef QUARN_FOUNDATION_EXPORT_H
#define QUARN_FOUNDATION_EXPORT_H

#if defined(__GNUC__)
#define QUARN_API __attribute__((visibility("default")))
#else
#define QUARN_API
#endif

#endif
