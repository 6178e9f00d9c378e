// cSMLP, the SML parser.
//
// One instance parses one stream of SML files; a file runs from an open request or response to a
// close request or response. The host feeds raw SML bytes in pieces of any size, as they arrive;
// the parser consumes every byte, keeps its place across calls, and hands back one finished record
// per message. What records it yields does not depend on how the input is cut into pieces.
//
//   cSMLP parser(1);
//   std::map<int, vorn::cRecord> records;
//   int count = 0;
//   vorn::cRecord piece;
//   piece.AppendUIntPar("SmltFlags", BUF_FLAG_FIRST | BUF_FLAG_LAST, 0);
//   piece.AppendDataPar("SmlRawData", bytes, size, 0);
//   int result = parser.SmlParser(piece, records, count);
//
// Input record: "SmltFlags" (unsigned: BUF_FLAG_FIRST on the piece that starts a file,
// BUF_FLAG_LAST on the piece that ends it) and "SmlRawData" (data, may be of no bytes). This is
// what cSMLTdec::Decode appends to its output record.
//
// Output: for each message a record, stored in the caller's map at key count, which is then counted
// up. Its parameters, in order: "SmlMsgHeader" (record), the body under the message's label
// (record), "SmlCrc" (unsigned), "SmlStatus" (record: "Error", "Type", "Cast", "MsgNoInFile"),
// "SmltFlags" (unsigned: BUF_FLAG_SML, plus FIRST for the open and LAST for the close message) and
// "SmlMsgRawData" (data: the message's bytes). A message with an identifier that the parser does
// not know has only "SmlMsgHeader". Bodies hold the fields that were present; names of six octets
// (object names, parameter names, path entries) are 64-bit numbers with the first octet in bits 47
// to 40. A name shorter than six octets fills the number from its first octet on, with 0 for what
// is missing; an object name longer than 256 bytes is refused. An integer or boolean of no bytes
// appends nothing. A codepage other than "ISO 8859-15" is refused, also one that is shorter than
// its 11 bytes.
//
// Packets: a message longer than SML_MESSAGE_STORE bytes, or with a value longer than
// SML_VALUE_CHUNK, is delivered as several records, each with the full header, "SmlMsgRawData"
// holding that packet's bytes, and "SmlCrc" the running CRC register; packets are not classified
// ("Cast" is -1). The last record carries the received CRC and the whole body. Joined in order, the
// raw bytes are the message. A long value of a list or period entry stands in the raw bytes only;
// its entry keeps the last piece. A long value of a parameter tree is told in pieces: each packet
// it makes carries the tree so far as "parTree", with "extFlag" true, the value's total length
// "extLen" and that packet's piece as "value", beside "extMsgPart", the packet's number. The last
// piece has "extFlag" false; it comes with the next record, where what the tree held behind it
// follows as a second "parTree", whose nodes above the long value's have no name. A message longer
// than SML_MAX_MESSAGE, or than the limit that SetMaxMessage has set, is refused; so is one whose
// packets would repeat more nodes of its tree than it has bytes.
//
// When input is bad, "Error" in "SmlStatus" (enum eSML_STATUS) names the attention response that
// the host should send; a trace line of LibSmlp at level 2 says what was wrong. An error ends the
// file: the next input must begin one, flagged BUF_FLAG_FIRST. A message that arrives with a wrong
// CRC is still delivered, with "Error" set; an open message with a wrong CRC ends the file without
// a record.
//
// Time: the library has no timer. A host that sees no byte for longer than its inter-character
// timeout calls TimeoutEvent and then SmlParser with an empty piece: an unfinished message is
// dropped (a close message that lacks only its last byte is accepted, with an "Error"). To give up
// the whole file, it then calls Reset_FileAttributes.
//
// Threads: an instance serves one thread at a time, TimeoutEvent included. Instances share nothing
// but the trace unit LibSmlp. Memory: the instance itself has a fixed size. Memory follows the
// bytes that came: records take at most 200 bytes for each byte of input, whatever lists announce,
// those of refused messages included. A message's record is one piece of memory: whoever keeps a
// part of it keeps it all. The memory of the last three messages, if they were small (10 KiB each
// at most), is held, and taken again when the host has dropped their records. No exception leaves
// the class.
#ifndef QUARN_PARSER_PARSER_H
#define QUARN_PARSER_PARSER_H

#include "quarn/foundation/export.h"
#include "quarn/foundation/framework.h"
#include "quarn/foundation/limits.h"
#include "quarn/foundation/record_builder.h"
#include "quarn/foundation/tl.h"
#include "quarn/parser/codes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <utility>

class QUARN_API cSMLP
{
public:
    // Id is the number that ends every trace line of this instance.
    explicit cSMLP(int Id) noexcept;
    ~cSMLP();
    cSMLP(const cSMLP&) = delete;
    cSMLP& operator=(const cSMLP&) = delete;

    // Consumes the raw bytes in in and appends finished records to out. The result is one of
    // eSMLP_RESULT. REQUIRES: nobody changes in meanwhile, a trace sink included.
    int SmlParser(vorn::cRecord& in, std::map<int, vorn::cRecord>& out, int& count) noexcept;

    // Notes that the inter-character timeout has expired; the next call of SmlParser without input
    // acts on it.
    void TimeoutEvent() noexcept;

    // Sets the longest message that is followed, in bytes; SML_MAX_MESSAGE until then. A limit
    // below SML_MESSAGE_STORE counts as that. One message takes up to 200 times as much memory: a
    // machine of 64 MB that reads meters does well with a limit of 64 KiB.
    void SetMaxMessage(unsigned int bytes) noexcept;

    // Between two calls of SmlParser, the host may reset what the parser has read so far. Both
    // together give up the file; the next input must begin one, flagged BUF_FLAG_FIRST.
    //
    // Reset_MsgAttributes forgets the unfinished message and a timeout; the next input begins a
    // message of the same file. Reset_FileAttributes forgets the open message, its identification
    // and the count of messages; an unfinished message goes on, as the first of a file.
    void Reset_MsgAttributes() noexcept;
    void Reset_FileAttributes() noexcept;

    // Empties the nodes and child lists of an unfinished parameter tree. What is still to come of
    // it, the value that is being read included, is kept as if it were all. No effect elsewhere.
    void Cleanup_TreeRecords() noexcept;

    // Sets the "Error" (enum eSML_STATUS) of the unfinished message, or of the next one, to what a
    // code of a parse function ("Decoding-Error: rc=%d") calls for; a code that is not known, to
    // SML_STATUS_FE00. The parser may still set another; Reset_MsgAttributes takes it back. The
    // result is -3 for the codes 10 and 11, and for 140 (wrong CRC) in a message with
    // abort-on-error 0 that is neither the first of its file nor a close request; else -2.
    int ErrorHandler(int code) noexcept;

    // Kinds of server ids. Broadcast: of no bytes, or 6 or 7 bytes all 0xFF. Unicast: the fixed own
    // id 05 00 00 00 00 00 00, or its last six bytes. Multicast: 01 00 5E and a byte below 0x80 at
    // the start of 6 bytes, or behind the first of 7.
    static bool IsMucBroadcast(const char* id, unsigned int len) noexcept;
    static bool IsMucUnicast(const char* id, unsigned int len) noexcept;
    static bool IsMucMulticast(const char* id, unsigned int len) noexcept;
    static bool Addressed_2_Us(int) noexcept; // true, whatever is asked

    // Reverse the order of n bytes, in place or into dst, which must not overlap src.
    static void Reverse_OctetString(char* s, int n) noexcept;
    static void ReverseCopy_OctetString(const char* src, int n, char* dst) noexcept;

private:
    // ---- The engine: structures are tables of fields, walked with an explicit stack of frames

    struct Refusal;
    struct Field;
    struct Layout;
    struct Tables;
    struct Shared; // fields that several tables have
    struct BodyFields;
    struct Bodies;
    enum class Keep : std::uint8_t;
    enum class Shape : std::uint8_t;

    struct Frame {
        const Layout* pLayout = nullptr;
        std::uint32_t uiIndex = 0; // state: 0 the list's TL field, n the n-th element
        std::uint32_t uiCount = 0; // elements
        bool bOptional = false;    // the structure may be absent
        bool bFilled = false;      // its record holds something
        bool bDelivered = false;   // of a tree: what it held has gone out with a packet
        bool bKept = false;        // a record takes the fields: the builder's innermost
        bool bOwn = false;         // and it is this structure's own
        std::uint32_t uiLevel = 0; // the builder's, of a record of its own
        const quarn::detail::Label* pWrap = nullptr; // of the record put around the finished one
    };

    int Walk();
    void TellStop(int rc);
    int ReadField(Frame& frame);
    bool IsStuck() const noexcept;
    int OpenSequence(Frame& frame);
    static std::uint32_t Believed(const Layout& list, std::uint32_t announced,
                                  std::uint32_t left) noexcept;
    int Enter(const Layout& layout, bool optional, bool kept, bool own);
    int EnterKept(const Layout& layout, const Field& field,
                  const quarn::detail::Label* wrap = nullptr);
    int Leave();
    const Field& CurrentField(const Frame& frame) const noexcept;
    quarn::detail::RecordBuilder& Target() noexcept;
    bool IsKept(const Field& field) const noexcept;
    int Refuse(const Refusal& refusal, std::uint32_t number = 0) const noexcept;
    int RefuseList(const Layout& layout, const Refusal& refusal) const noexcept;
    template <typename... Args>
    void Say(vorn::eLEVEL level, const char* text, Args... args) const noexcept;

    // ---- The short way for plain fields

    // Bytes of the longest integer and its TL field: less input than that is left to the readers.
    static constexpr std::uint32_t kLeastTaken = 9;

    struct Whole;
    template <const auto& Fields>
    int TakeFields(Frame& frame);
    template <const auto& Fields, std::size_t... I>
    int TakeEach(Frame& frame, std::index_sequence<I...>);
    template <const auto& Fields, std::size_t I>
    int TakeField(Frame& frame, Whole& in);
    template <const auto& Fields, std::size_t I>
    int TakeNumber(Frame& frame, Whole& in);
    template <const auto& Fields, std::size_t I>
    int TakeOctets(Frame& frame, Whole& in);
    template <const auto& Fields, std::size_t I>
    int TakeByReader(Whole& in);
    template <const auto& Fields, std::size_t I>
    int TellHook(const Whole& in);
    static void TakeList(Frame& entered, Whole& in);
    int TakeValue(Frame& frame, Whole& in, bool keep);
    int TakeStructure(const Field& field, Whole& in);
    template <const auto& Fields>
    int TakeElements(Frame& frame);

    // ---- TL decoder and primitives

    enum class Primitive : std::uint8_t { None, TlField, Integer, Octets };

    int Decode_TLField() noexcept;
    int Decode_LongTLField() noexcept;
    int Parse_IntegerTypes(std::uint32_t len) noexcept;
    int Parse_OctetString(std::uint32_t len, std::uint32_t max, bool keep) noexcept;
    int Parse_EndOfSmlMsg() noexcept;
    void CleanUp_Cache() noexcept;
    bool FeedPrimitive(const unsigned char* piece, std::uint32_t size) noexcept;

    // ---- Readers of fields

    int ReadOctets(const Field& field);
    int ReadNumber(const Field& field);
    int ReadStructure(const Field& field);
    int ReadValue(const Field& field);
    int ReadTimeValue(const Field& field);
    int ReadUntypedStatus(const Field& field);
    int ReadTreeValue(const Field& field);
    int ReadChildList(const Field& field);
    int ReadWithRawdata(const Field& field);
    int ReadBody(const Field& field);
    int ReadCrc(const Field& field);
    int ReadEnd(const Field& field);

    int CheckOctets(const Field& field) const noexcept;
    int KeepOctets(Frame& frame, const Field& field);
    int KeepNumber(Frame& frame, const Field& field);
    int Parse_SML_Value(bool keep);
    bool KeepValue(Frame& frame);
    bool AppendValue();
    void AppendNumber(const Field& field, std::uint64_t value, std::uint32_t len);
    void AppendOctets(Frame& frame, const Field& field);
    static std::int64_t SignedInteger(std::uint64_t bits, std::uint32_t len) noexcept;
    static std::uint64_t NameNumber(const unsigned char* s, std::uint32_t len) noexcept;

    // ---- Hooks: what is checked or done with a field

    int CheckTimeChoice();
    int CheckListTypeChoice();
    int CheckProcParChoice();
    int CheckTreeValue();
    int CheckCodepage();
    int CheckAttribute();
    int CheckSmlVersion();
    int CheckAbortOnError();
    int CheckMsgIdentifier();
    int KeepObjReqEntry();
    int KeepTransactionId();
    int KeepGroupNo();
    int KeepClientId();
    int KeepReqFileId();
    void KeepOpenHeader() noexcept;
    int KeepServerId();
    int KeepOpenServerId();
    int CompareServerId();
    int TellParName();
    int KeepProcParValue();
    int TellChildList();
    int KeepTree();
    int TellListType();
    void TellProcParStop(const Frame& frame, int rc);

    // ---- Trees, and their values delivered in packets

    std::uint32_t TreeLevel() const noexcept;
    vorn::cRecord ExtendedValue(bool more) const;
    bool RepeatsTooMuch();
    vorn::cRecord LinkedTree(const vorn::cRecord& procParVal) const;
    void AppendPacketTree(vorn::cRecord& body);

    // ---- Envelope, validation, records

    void SmlMsg_Validate() noexcept;
    bool HasBody() const noexcept;
    vorn::cRecord Body() const;
    vorn::cRecord Build_MsgRecord();
    vorn::cRecord Build_PacketRecord(const vorn::cRecord& body);
    template <typename Record>
    void AppendOpenData(Record& header) const;
    template <typename Record>
    void AppendStatus(Record& status) const;
    template <typename Record, typename Part>
    bool AppendParts(Record& message, const Part& header, const Part& body,
                     const Part& status) const;
    void TellRecord(const vorn::cRecord& message, const vorn::cRecord& header) const;

    // ---- Driver

    using Records = std::map<int, vorn::cRecord>;

    int Drive(Records& out, int& count);
    int StepIdle();
    int StepActive(Records& out, int& count);
    int OnStop(int rc, Records& out, int& count);
    void StepWait(Records& out, int& count);
    void OnTimeout(Records& out, int& count);
    int OnMessage(Records& out, int& count);
    int OnOpenCrcError();
    int OnPacket(int rc, Records& out, int& count);
    int OnError(int rc, Records& out, int& count);
    void Emit(Records& out, int& count);
    static void Store(vorn::cRecord message, Records& out, int& count);
    int CrcError() noexcept;

    // ---- The message store: aucMsgBuf, and behind it, not copied yet, the bytes of the input from
    // pucRun to pucInData

    std::uint32_t InputLeft() const noexcept
    {
        return static_cast<std::uint32_t>(pucInEnd - pucInData);
    }
    std::uint32_t StoreUsed() const noexcept
    {
        return uiMsgLen + static_cast<std::uint32_t>(pucInData - pucRun);
    }
    std::uint32_t StoreFree() const noexcept { return SML_MESSAGE_STORE - StoreUsed(); }
    static void CopyBytes(unsigned char* to, const unsigned char* from, std::uint32_t size) noexcept
    {
        if (size == 1)
            *to = *from;
        else if (size != 0)
            std::memcpy(to, from, size);
    }
    void KeepRun() noexcept
    {
        const auto run = static_cast<std::uint32_t>(pucInData - pucRun);
        CopyBytes(aucMsgBuf.data() + uiMsgLen, pucRun, run);
        uiMsgLen += run;
        pucRun = pucInData;
    }
    const char* StoreBytes() noexcept;
    void EmptyStore() noexcept;
    unsigned StoreTail(std::uint32_t back) const noexcept;

    template <std::size_t Size>
    struct Bytes {
        std::uint32_t uiLen = 0;
        std::array<char, Size> acData{};

        // REQUIRES: len <= Size.
        void Set(const unsigned char* data, std::uint32_t len) noexcept
        {
            uiLen = len;
            if (len != 0)
                std::memcpy(acData.data(), data, len);
        }
    };

    // Instance and input
    int iId;
    std::uint32_t uiMaxMessage = SML_MAX_MESSAGE;
    const unsigned char* pucInData = nullptr; // next unread byte
    const unsigned char* pucInEnd = nullptr;
    const unsigned char* pucRun = nullptr; // first byte consumed but not copied into aucMsgBuf
    std::uint32_t uiSmltFlags = 0;         // flags of the current input
    std::uint32_t uiSmltFlagsOut = 0;      // flags of the record to be emitted

    // TL field and primitive in progress
    std::uint32_t uiTLF_Type = 0;
    std::uint32_t uiTLF_Count = 0;
    std::uint64_t ullInteger = 0;             // the integer read, not sign-extended
    const unsigned char* pucString = nullptr; // the octet string read: in the input or aucValueBuf
    std::uint32_t uiStringLen = 0;
    std::uint32_t uiCacheCnt = 0;           // bytes read of the TL field or chunk in progress
    std::uint32_t uiCacheLen = 0;           // bytes outstanding
    Primitive ePrimitive = Primitive::None; // that stopped for lack of input or room
    std::uint32_t uiOctStrState = 0;        // chunks: 0 none, 1 first, 2 further, 3 last delivered
    std::uint16_t usFieldState = 0;         // of the field in progress: 0 its TL field
    std::array<unsigned char, quarn::detail::kTlMaxSize> aucTLFCache{};

    // Structures in progress: message, message body and body, then at most a tree's nodes and child
    // lists and the structures of a value
    static constexpr std::size_t kMaxFrames = 3 + 2 * MAX_TREE_LEVEL + 6;
    std::uint32_t uiDepth = 0; // index of the innermost frame; frame 0 is the message
    std::array<Frame, kMaxFrames> aFrames;
    const Layout* pBodyLayout = nullptr;
    unsigned char ucChoice = 0;        // tag of a time or list type
    unsigned char ucProcParChoice = 0; // tag of a tree's value; 0: absent
    bool bProcParValSet = false;       // the value read is to be attached to its tree
    vorn::cRecord recPacketTree;       // tree with the chunk just read
    vorn::cRecord recResultTree;       // tree with the last piece of a long value, to be delivered
    bool bPacketTree = false;
    bool bResultTree = false;

    // Message attributes
    Bytes<SML_MAX_TRANSACTION_ID> transactionId;
    unsigned char ucGroupNo = 0;
    unsigned char ucAbortOnError = 0;
    std::uint32_t uiMsgIdentifier = 0;
    std::uint16_t usCrcRcv = 0;
    std::uint16_t usCrcCalc = 0; // register over the packets handed out
    std::uint16_t usCrcMsg = 0;  // finished CRC of the message, known when its CRC field begins
    int iError = 0;
    int iType = 0;
    int iCast = -1;
    Bytes<SML_MAX_SERVER_ID> msgServerId;
    bool bPaket = false;
    std::uint32_t uiPaketNo = 1;
    std::uint32_t uiPaketBytes = 0; // of this message, in packets handed out
    std::uint64_t ullRepeated = 0;  // nodes of its tree that packets have told again
    std::uint16_t usEvents = 0;
    std::uint16_t usParserState = 0;
    quarn::detail::RecordBuilder builder; // level 0: the header; 1: the body; then what is in it
    quarn::detail::RecordBuilder::cPart partDone; // the structure that has just ended
    vorn::cRecord recBody;                        // of a message in packets whose tree has ended
    bool bBodyDone = false;

    // File attributes
    Bytes<SML_MAX_TRANSACTION_ID> openTransactionId;
    Bytes<SML_MAX_CLIENT_ID> openClientId;
    Bytes<SML_MAX_REQ_FILE_ID> openReqFileId;
    Bytes<SML_MAX_SERVER_ID> openServerId;
    unsigned char ucOpenGroupNo = 0;
    unsigned char ucOpenAbortOnError = 0;
    int iFileCast = -1;
    std::uint64_t ullFileSize = 0;
    std::uint32_t uiMsgNo = 1;
    bool bFileOpen = false;

    // Stores
    std::uint32_t uiMsgLen = 0;
    std::array<unsigned char, SML_MESSAGE_STORE> aucMsgBuf;
    std::array<unsigned char, SML_VALUE_CHUNK> aucValueBuf;
};

#endif
