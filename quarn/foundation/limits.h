// The library's limits, all in one place. Sizes are in bytes.
#ifndef QUARN_FOUNDATION_LIMITS_H
#define QUARN_FOUNDATION_LIMITS_H

// The parser's message store: a message above this size is delivered in packets.
constexpr unsigned SML_MESSAGE_STORE = 6000;

// The most of a long octet string that is delivered at once; longer values arrive in chunks of this
// size, one packet each.
constexpr unsigned SML_VALUE_CHUNK = 1200;

// The longest message, packets and all, that a parser follows unless its host sets another limit. A
// longer one is refused like any other that cannot be decoded.
constexpr unsigned SML_MAX_MESSAGE = 16U * 1024 * 1024;

// The longest messages that the encode functions make, by what they carry.
constexpr unsigned SML_MAX_ENCODED_ENVELOPE = 500; // open, close and attention messages
constexpr unsigned SML_MAX_ENCODED_REQUEST = 1000; // requests that send no tree
constexpr unsigned SML_MAX_ENCODED_LIST = 4000;    // list and profile list responses
constexpr unsigned SML_MAX_ENCODED_TREE = 10000;   // process parameters, got or set

constexpr unsigned SML_MAX_TRANSACTION_ID = 64;
constexpr unsigned SML_MAX_CLIENT_ID = 32;
constexpr unsigned SML_MAX_REQ_FILE_ID = 64;
constexpr unsigned SML_MAX_SERVER_ID = 32;
constexpr unsigned SML_MAX_CODEPAGE = 64;
constexpr unsigned SML_MAX_USERNAME = 64;
constexpr unsigned SML_MAX_PASSWORD = 64;
constexpr unsigned SML_MAX_ATTRIBUTE = 512;
constexpr unsigned SML_MAX_ATTENTION_MSG = 128;
constexpr unsigned SML_MAX_OBJ_NAME = 256;
constexpr unsigned SML_MAX_SIGNATURE = 256;

// Names of objects and parameters, and attention numbers.
constexpr unsigned SML_NAME_SIZE = 6;

// Levels of a parameter tree that the parser follows: nodes on levels 0 to 11.
constexpr unsigned MAX_TREE_LEVEL = 12;

// Levels of a parameter tree in a record that the record classes and the encoder accept. A
// deeper tree gives a record class without any field; the encoder leaves out what lies deeper; both
// trace it. Each level takes up to 700 bytes of stack, so that 48 KiB suffice whatever the input.
// The record container itself has no limit.
constexpr unsigned SML_MAX_TREE_DEPTH = 64;

#endif
