// Everything that a host of libquarn includes.
#ifndef QUARN_QUARN_H
#define QUARN_QUARN_H

#include "quarn/encoder/choices.h"
#include "quarn/encoder/converters.h"
#include "quarn/encoder/encode.h"
#include "quarn/encoder/list.h"
#include "quarn/encoder/message.h"
#include "quarn/encoder/message_body.h"
#include "quarn/encoder/octet_string.h"
#include "quarn/encoder/scalars.h"
#include "quarn/encoder/sml_type.h"
#include "quarn/encoder/structures.h"
#include "quarn/encoder/tl_writers.h"
#include "quarn/foundation/buffer.h"
#include "quarn/foundation/fifo3.h"
#include "quarn/foundation/frame_flags.h"
#include "quarn/foundation/framework.h"
#include "quarn/foundation/limits.h"
#include "quarn/foundation/schema.h"
#include "quarn/foundation/tl.h"
#include "quarn/foundation/units.h"
#include "quarn/parser/parser.h"
#include "quarn/parser/tree_path.h"
#include "quarn/records/bodies.h"
#include "quarn/records/entries.h"
#include "quarn/records/envelope.h"
#include "quarn/records/lists.h"
#include "quarn/records/tree.h"
#include "quarn/records/values.h"
#include "quarn/transport/codec.h"

#endif
