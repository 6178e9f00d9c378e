// Everything of the framework: records, parameters, paths, messages, trace units, formatted strings
// and CRC-16.
#ifndef VORN_VORN_H
#define VORN_VORN_H

#include "vorn/builder.h"
#include "vorn/crc16.h"
#include "vorn/format.h"
#include "vorn/msg.h"
#include "vorn/object.h"
#include "vorn/path.h"
#include "vorn/record.h"
#include "vorn/trace.h"

#endif
