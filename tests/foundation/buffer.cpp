// Buffers through whole sequences of operations, with the state after each of them. The three-byte
// window is the matter of the framing that it serves.
#include "quarn/quarn.h"

#include <gtest/gtest.h>

namespace
{

TEST(Buffer, EachStepOfALife)
{
    char storage[8] = {};
    cBuffer buffer(storage, 8, BUF_FLAG_SML, 7);
    struct {
        const char* name;
        void (*step)(cBuffer&);
        long free;
        long left;
        int flags;
    } const table[] = {
        {"new", [](cBuffer&) {}, 8, 0, 0x10},
        {"UnGet at the begin", [](cBuffer& b) { EXPECT_EQ(b.UnGet(), -1); }, 8, 0, 0x10},
        {"PutQuick", [](cBuffer& b) { b.PutQuick('\xFE'); }, 7, 1, 0x10},
        {"Put", [](cBuffer& b) { b.Put("abcd", 4); }, 3, 5, 0x10},
        {"GetQuick", [](cBuffer& b) { EXPECT_EQ(b.GetQuick(), 0xFE); }, 3, 4, 0x10},
        {"UnGet", [](cBuffer& b) { EXPECT_EQ(b.UnGet(), 0xFE); }, 3, 5, 0x10},
        {"Skip", [](cBuffer& b) { b.Skip(3); }, 3, 2, 0x10},
        {"SetFlags adds", [](cBuffer& b) { b.SetFlags(BUF_FLAG_FIRST); }, 3, 2, 0x11},
        {"Commit",
         [](cBuffer& b) {
             b.ReadPtr()[b.Left()] = 'e';
             b.Commit(1);
         },
         2, 3, 0x11},
        {"ReadRewind", [](cBuffer& b) { b.ReadRewind(); }, 2, 6, 0x11},
        {"nothing", [](cBuffer& b) { b.Put(nullptr, 0); }, 2, 6, 0x11},
        {"Release leaves the caller's storage", [](cBuffer& b) { b.Release(); }, 2, 6, 0x11},
        {"Clear", [](cBuffer& b) { b.Clear(); }, 8, 0, 0},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        row.step(buffer);
        EXPECT_EQ(buffer.Free(), row.free);
        EXPECT_EQ(buffer.Left(), row.left);
        EXPECT_EQ(buffer.GetFlags(), row.flags);
    }
    EXPECT_EQ(std::string(storage, 6), "\xFE\x61\x62\x63\x64\x65");
}

TEST(Buffer, FlagsAreTestedTogether)
{
    constexpr int kTable[][3] = {{0, 0, 1}, {0x22, 0, 1}, {0x01, 0x03, 0}, {0x23, 0x03, 1}};
    for (const auto& [set, tested, all] : kTable)
        EXPECT_EQ(cBuffer(nullptr, 0, set, 1).TestFlagsAnd(tested), all != 0) << set;
}

TEST(Buffer, HeapStorageIsReleasedOnce)
{
    for (const long size : {-1L, 0L, 1L, 70000L}) {
        auto* const buffer = new HeapBuffer(size, BUF_FLAG_TP);
        EXPECT_EQ(buffer->Free(), size < 0 ? 0 : size);
        while (buffer->Free() > 0)
            buffer->PutQuick('x');
        EXPECT_EQ(buffer->GetSize(), static_cast<int>(sizeof(cBuffer)));
        buffer->Release();
        buffer->Release();
        EXPECT_EQ(buffer->Free(), 0);
        EXPECT_EQ(buffer->Left(), 0);
        EXPECT_EQ(buffer->UnGet(), -1);
        delete static_cast<cBuffer*>(buffer);
    }
}

} // namespace
