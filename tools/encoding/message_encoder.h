// Message records to SML bytes that are sure to say what was meant: what the library's encoder
// wrote is read again by its parser and compared.
#ifndef TOOLS_ENCODING_MESSAGE_ENCODER_H
#define TOOLS_ENCODING_MESSAGE_ENCODER_H

#include "quarn/quarn.h"

#include <string>
#include <string_view>

namespace tool
{

struct EncodedMessage {
    bool bFirst = false; // opens its file
    bool bLast = false;  // closes its file
    std::string bytes;
};

class cMessageEncoder
{
public:
    cMessageEncoder();

    // Encodes a record as the parser gives it: "SmlMsgHeader" and the body under its label are
    // read, and "SmlStatus" when it is there. False when there is no such message, when it was bad
    // or only a part of one, and when what came out cannot be read or says something else; error
    // then tells why.
    bool Encode(const vorn::cRecord& record, EncodedMessage& message, std::string& error) const;

private:
    bool Verify(const vorn::cRecord& header, const vorn::cRecord& body, unsigned identifier,
                const EncodedMessage& message, std::string& error) const;

    std::string openMessage; // so that a message that opens no file can be parsed
};

} // namespace tool

#endif
