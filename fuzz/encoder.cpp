// The encoder over records of any kind: a well-formed message, some of whose parameters are then
// left out, doubled, renamed, made of another kind, too long or too deep. Nothing is overrun,
// nothing but the result is changed, what was not damaged is read back, and what the parser reads
// of a damaged message says the same when it is encoded again. Trace lines change no byte.
#include "fuzz/input.h"
#include "tests/roundtrip/generator.h"
#include "tests/support/hex.h"
#include "tests/support/trace_capture.h"

namespace
{

using namespace test;
using fuzz::Require;

// A record with the damage that the choices tell: mostly none, and none when they are used up.
class Damage
{
public:
    explicit Damage(Choices c) : choices(std::move(c)) {}

    cRecord Of(const cRecord& record)
    {
        cRecord out;
        for (const vorn::cRecordPar& par : record) {
            if (choices.Below(16) != 15) {
                Keep(out, par, par.GetName());
                continue;
            }
            bDone = true;
            Change(out, par);
        }
        return out;
    }
    bool bDone = false;

private:
    void Keep(cRecord& out, const vorn::cRecordPar& par, const char* name)
    {
        cRecord nested;
        if (par.GetRecord(nested))
            out.AppendRecordPar(name, Of(nested), 0);
        else
            AppendCopy(out, par, name);
    }
    void Change(cRecord& out, const vorn::cRecordPar& par)
    {
        static constexpr const char* kNames[] = {"value",    "parTree", "child_List",
                                                 "serverId", "status",  ""};
        const char* const name = par.GetName();
        switch (choices.Below(10)) {
        case 0: // left out
            return;
        case 1:
            Keep(out, par, name);
            return Keep(out, par, name);
        case 2:
            return Keep(out, par, kNames[choices.Below(std::size(kNames))]);
        case 3:
            return AppendBytes(out, name, std::string(choices.Below(20000), quarn::kFrameEscape));
        case 4:
            return out.AppendUInt64Par(name, choices.Number(), 0);
        case 5:
            return out.AppendSIntPar(name, static_cast<int>(choices.Number()), 0);
        case 6:
            return out.AppendSInt64Par(name, static_cast<long long>(choices.Number()), 0);
        case 7:
            return out.AppendBoolPar(name, choices.Below(2) != 0, 0);
        case 8:
            return Repeat(out, par);
        default:
            return Deepen(out, par);
        }
    }
    // More elements than a list has room for.
    void Repeat(cRecord& out, const vorn::cRecordPar& par)
    {
        for (unsigned count = choices.Below(300); count > 0; --count)
            AppendCopy(out, par, par.GetName());
    }
    // The same at the bottom of more levels than the encoder follows, or just as many.
    void Deepen(cRecord& out, const vorn::cRecordPar& par)
    {
        cRecord inner;
        AppendCopy(inner, par, par.GetName());
        for (unsigned levels = choices.Below(160); levels > 0; --levels) {
            cRecord list;
            cRecord tree;
            list.AppendRecordPar("parTree", inner, 0);
            tree.AppendUInt64Par("parName", levels, 0);
            tree.AppendRecordPar("child_List", list, 0);
            inner = tree;
        }
        out.AppendRecordPar(par.GetName(), inner, 0);
    }

    Choices choices;
};

// The parser's record of the message, behind an open message unless it is one itself; of no
// parameters when it is refused or only a packet of it is read.
cRecord Parsed(const Sent& sent)
{
    static const std::string open = Make(KindOf(SML_OPEN_REQ), 1, OnlyNeeded).Bytes();
    Parser parser;
    const bool isOpen = sent.kind->identifier >> 8 == 1;
    parser.FeedFile(isOpen ? sent.Bytes() : open + sent.Bytes(), {});
    if (parser.records.size() <= (isOpen ? 0U : 1U) || parser.results[0] < 0)
        return {};
    const cRecord last = parser.records.rbegin()->second;
    const int cast = last.GetFirstParByPath("SmlStatus.Cast", ".", 0, 0).GetSInt();
    return cast >= 0 || sent.kind->identifier == SML_CLOSE_REQ ? last : cRecord();
}

void Encode(Sent& sent)
{
    cRecord header = sent.header;
    cRecord body = sent.body;
    const int result = sent.kind->encode(body, header, sent.result);
    Require(result == SML_ENCODE_OK, "every record makes a message");
    Require(body == sent.body && header == sent.header, "what is encoded stays as it is");
    Require(sent.result.GetParCount(nullptr, 0, 0) == 2 && !sent.Bytes().empty() &&
                sent.Bytes().size() <= sent.kind->size,
            "the message fits its buffer", sent.result.ToString());
    const TraceCapture traced(LibSmle, 16); // what lacks something is then made of objects
    cRecord same;
    sent.kind->encode(body, header, same);
    Require(same == sent.result, "trace lines change no byte", same.ToString());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    Damage damage(input.Back());
    Choices choices = input.Front();
    Sent sent =
        Fill(Kinds()[choices.Below(static_cast<unsigned>(Kinds().size()))], choices, AtRandom);
    const Sent meant = sent;
    sent.body = damage.Of(sent.body);
    sent.header = damage.Of(sent.header);
    Encode(sent);
    const cRecord read = Parsed(sent);
    if (!damage.bDone) {
        const std::string difference = Difference(meant, read);
        Require(difference.empty(), "a well-formed message is read", difference);
    }
    const vorn::cRecordPar error = read.GetFirstParByPath("SmlStatus.Error", ".", 0, 0);
    if (!error.IsValid() || error.GetSInt() != SML_STATUS_OK ||
        read.GetParCount("SmlCrc", 0, 0) == 0)
        return 0;
    Require(SmlMessageIsWhole(sent.result), "what is read is whole", ToHex(sent.Bytes()));
    Sent again{sent.kind, Nested(read, "SmlMsgHeader"), Nested(read, sent.kind->name), {}};
    if (const vorn::cRecordPar raw = again.body.GetFirstPar("rawdata", 0, 0); raw.IsValid())
        AppendCopy(again.body, raw, "RawData");
    Encode(again);
    Require(again.Bytes() == sent.Bytes(), "what was read is encoded as it was",
            ToHex(sent.Bytes()) + '\n' + ToHex(again.Bytes()) + '\n' + read.ToString());
    return 0;
}
