// The parser behind damage: after any bytes, in any pieces and with any flags, and a reset as a
// host does it at the end of a frame, a good file is read whole.
#include "fuzz/input.h"
#include "tests/roundtrip/generator.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    test::Choices choices = input.Seeded();
    const std::string good = test::BytesOf(test::MakeFile(choices, 1));
    const std::string garbage = input.Rest();

    test::Parser parser;
    fuzz::InPieces(garbage, choices, 8, 5000, [&](std::string_view piece, bool) {
        parser.Feed(choices.Chance(80) ? unsigned{BUF_FLAG_FIRST} : choices.Below(0x40), piece);
        if (choices.Chance(5))
            parser.parser.TimeoutEvent();
        if (choices.Chance(10))
            parser.Feed(choices.Below(0x40), "");
        return true;
    });
    parser.Reset();
    parser.records.clear();
    parser.count = 0;
    parser.FeedFile(good, {});

    test::Parser fresh;
    fresh.FeedFile(good, {});
    fuzz::Require(fresh.count >= 3 && parser.results.back() == SMLP_FILE_COMPLETE &&
                      parser.records == fresh.records,
                  "a good file is read whole", fresh.Text() + "behind damage:\n" + parser.Text());
    return 0;
}
