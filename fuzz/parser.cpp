// The parser over any bytes: it comes to an end, cutting the input changes nothing, what records
// hold stands in the input, memory stays in proportion to it, and the class of each record takes it
// over and gives it back.
#include "fuzz/input.h"
#include "tests/support/failing_new.h"
#include "tests/support/parse.h"

#include <functional>

namespace
{

using fuzz::Require;
using vorn::cRecord;

using Size = std::function<std::size_t()>; // of the next piece

// Pieces as the tool gives them: each may begin a file, and nothing follows what was refused.
void Feed(test::Parser& parser, std::string_view bytes, const Size& size)
{
    for (bool more = true; more && !bytes.empty();) {
        const std::string_view piece = bytes.substr(0, size());
        bytes.remove_prefix(piece.size());
        more = parser.Feed(BUF_FLAG_FIRST, piece) >= 0;
    }
    parser.Reset();
}

// Byte by byte, in any pieces, and in three of which the middle one fits into a field.
void RequireSameInPieces(const test::Parser& whole, std::string_view bytes, test::Choices& cuts)
{
    unsigned piece = 0;
    const Size sizes[] = {
        [] { return 1; },
        [&cuts] { return 1 + cuts.Below(cuts.Chance(50) ? 8 : 3000); },
        [&] {
            const auto size = static_cast<unsigned>(bytes.size());
            return ++piece == 1 ? cuts.Below(size) : piece == 2 ? 1 + cuts.Below(8) : size;
        },
    };
    for (const Size& size : sizes) {
        test::Parser pieces;
        Feed(pieces, bytes, size);
        Require(pieces.records == whole.records && pieces.count == whole.count,
                "cutting the input changes nothing", whole.Text() + "in pieces:\n" + pieces.Text());
    }
}

// The raw bytes of the records are runs of the input, in order.
void RequireRawBytesOf(const test::Parser& parser, std::string_view bytes)
{
    std::size_t from = 0;
    for (const auto& [key, record] : parser.records) {
        const vorn::cRecordPar raw = record.GetFirstPar("SmlMsgRawData", 0, 0);
        const std::string_view run(raw.IsValid() ? raw.GetData() : "",
                                   static_cast<std::size_t>(raw.GetSize()));
        from = bytes.find(run, from);
        Require(from != std::string_view::npos, "raw bytes stand in the input", record.ToString());
        from += run.size();
    }
}

// A valid object writes itself as a record of which an equal object can be made, and so does its
// copy. Only a list that loses all its elements, because they are not valid, is written once and
// then no more.
template <class C>
void TakeOver(const cRecord& record)
{
    const C object(record);
    if (!object.IsValid())
        return;
    cRecord written;
    cRecord again;
    Require(object.ToRecord(written), "a valid object writes itself", record.ToString());
    const C copy(object); // NOLINT(performance-unnecessary-copy-initialization)
    Require(copy.IsValid() && copy.ToRecord(again) && again == written, "a copy is equal",
            written.ToString() + '\n' + again.ToString());
    const C remade(written);
    again.Create();
    const bool same = remade.ToRecord(again) && again == written;
    Require(same || written.ToString().find("={}") != std::string::npos,
            "an object can be made of what its like wrote",
            written.ToString() + '\n' + again.ToString());
}

constexpr struct {
    const char* label;
    void (*check)(const cRecord& record);
} kClasses[] = {
    {"SmlMsgHeader", TakeOver<cSmlMsgHeader>},
    {"SmlStatus", TakeOver<cSmlMsgStatus>},
    {"SmlOpenReq", TakeOver<cSmlOpenReq>},
    {"SmlOpenRes", TakeOver<cSmlOpenResp>},
    {"SmlGetProfileReq", TakeOver<cSmlGetProfileReq>},
    {"SmlGetProfListRes", TakeOver<cSmlGetProfListRes>},
    {"SmlGetProfPackRes", TakeOver<cSmlGetProfPackRes>},
    {"SmlGetProcParReq", TakeOver<cSmlGetProcParReq>},
    {"SmlGetProcParRes", TakeOver<cSmlGetProcParRes>},
    {"SmlSetProcParReq", TakeOver<cSmlSetProcParReq>},
    {"SmlGetListReq", TakeOver<cSmlGetListReq>},
    {"SmlGetListRes", TakeOver<cSmlGetListRes>},
    {"SmlAttentionRes", TakeOver<cSmlAttentionRes>},
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    test::Choices cuts = input.Seeded();
    const std::string bytes = input.Rest();

    test::Parser whole;
    const long before = test::lBytesInUse;
    Feed(whole, bytes, [&bytes] { return bytes.size(); });
    // The parser keeps the memory of three messages for the next ones.
    const long most = 200 * static_cast<long>(bytes.size()) + 3 * 10240L;
    Require(test::lBytesInUse - before <= most, "memory is in proportion to the input",
            std::to_string(test::lBytesInUse - before) + " bytes");

    RequireSameInPieces(whole, bytes, cuts);
    RequireRawBytesOf(whole, bytes);
    for (const auto& [key, record] : whole.records) {
        for (const auto& row : kClasses) {
            if (record.GetFirstPar(row.label, 0, 0).IsValid())
                row.check(record);
        }
    }
    return 0;
}
