// The library's trace units, one per component. They are created when the library is loaded, before
// any static object of a program that links to it, with level 2 (errors and refused input), and
// live until it is unloaded. Levels may be changed at any time, from any thread:
//
//   LibSmlp->iLevel = vorn::LEVEL_DEBUG;
#ifndef QUARN_FOUNDATION_UNITS_H
#define QUARN_FOUNDATION_UNITS_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/framework.h"

extern QUARN_API vorn::cUnit* const LibSmle;  // encoder
extern QUARN_API vorn::cUnit* const LibSmlp;  // parser
extern QUARN_API vorn::cUnit* const LibSmlt;  // transport
extern QUARN_API vorn::cUnit* const LibQuarn; // record classes

#endif
