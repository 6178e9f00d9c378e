// Everything that a host of libquarn includes.
#ifndef QUARN_QUARN_H
#define QUARN_QUARN_H

#include "quarn/encoder/tl_writers.h"
#include "quarn/foundation/buffer.h"
#include "quarn/foundation/fifo3.h"
#include "quarn/foundation/frame_flags.h"
#include "quarn/foundation/framework.h"
#include "quarn/foundation/limits.h"
#include "quarn/foundation/messages.h"
#include "quarn/foundation/units.h"
#include "quarn/parser/parser.h"

#endif
