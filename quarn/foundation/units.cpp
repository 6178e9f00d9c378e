// The four trace units. The pointers are constants of the link; the units themselves are the first
// dynamic initialisation of the library, so that a statically linked host finds them ready too.
#include "quarn/foundation/units.h"

namespace
{

#if defined(__GNUC__)
#define QUARN_INIT_FIRST __attribute__((init_priority(101)))
#else
#define QUARN_INIT_FIRST
#endif

QUARN_INIT_FIRST vorn::cUnit unitSmle("LibSmle", vorn::eLEVEL(2), vorn::eOUTPUT(0));
QUARN_INIT_FIRST vorn::cUnit unitSmlp("LibSmlp", vorn::eLEVEL(2), vorn::eOUTPUT(0));
QUARN_INIT_FIRST vorn::cUnit unitSmlt("LibSmlt", vorn::eLEVEL(2), vorn::eOUTPUT(0));
QUARN_INIT_FIRST vorn::cUnit unitQuarn("LibQuarn", vorn::eLEVEL(2), vorn::eOUTPUT(0));

} // namespace

vorn::cUnit* const LibSmle = &unitSmle;
vorn::cUnit* const LibSmlp = &unitSmlp;
vorn::cUnit* const LibSmlt = &unitSmlt;
vorn::cUnit* const LibQuarn = &unitQuarn;
