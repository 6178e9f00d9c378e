// Memory that runs out: each allocation of each operation is made to fail in turn; the record must
// stay as it was, and nothing may leak. This program replaces the global operator new.
#include "vorn/vorn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace
{

long allocationsLeft = -1; // the allocation that finds 0 fails; negative: none does
long blocksAlive = 0;
std::size_t largestBlock = 0; // asked for

} // namespace

void* operator new(std::size_t size)
{
    if (allocationsLeft >= 0 && allocationsLeft-- == 0)
        throw std::bad_alloc();
    void* const p = std::malloc(size != 0 ? size : 1);
    if (p == nullptr)
        throw std::bad_alloc();
    ++blocksAlive;
    largestBlock = std::max(largestBlock, size);
    return p;
}

void operator delete(void* p) noexcept
{
    if (p != nullptr)
        --blocksAlive;
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept { operator delete(p); }

namespace
{

using vorn::cRecord;

const std::string kLongName(60, 'n');
const std::string kLongData(50, 'd');

// As many parameters as the node has room for, so that the next one needs a new node.
cRecord Sample()
{
    cRecord inner;
    inner.AppendDataPar(kLongName.c_str(), kLongData.data(), 50, 0);
    inner.AppendUIntPar("key", 7, 0);
    cRecord record;
    record.AppendRecordPar("inner", inner, 0);
    record.AppendUIntPar("a", 1, 0);
    record.AppendRecordPar(kLongName.c_str(), inner, 0);
    record.AppendDataPar("data", kLongData.data(), 50, 0);
    return record;
}

TEST(Memory, EveryFailingAllocationLeavesTheRecordAsItWas)
{
    const auto path = [] {
        cRecord key;
        key.AppendUIntPar("key", 7, 0);
        vorn::cRecordPath levels;
        levels.AddLevel("inner", key);
        return levels;
    }();
    struct {
        const char* name;
        void (*operation)(cRecord& record, const vorn::cRecordPath& path);
        int allocations; // at least, when all goes well
    } const table[] = {
        {"append", [](cRecord& r, const auto&) { r.AppendUIntPar("b", 2, 0); }, 1},
        {"append long data under a long name",
         [](cRecord& r, const auto&) {
             r.AppendDataPar(kLongName.c_str(), kLongData.data(), 50, 0);
         },
         3},
        {"append itself",
         [](cRecord& r, const auto&) { r.AppendRecordPar(kLongName.c_str(), r, 0); }, 2},
        {"delete from a shared node", [](cRecord& r, const auto&) { r.DeletePar("a", 0, 0); }, 1},
        {"look up by a long path",
         [](cRecord& r, const auto&) {
             r.GetFirstParByPath((kLongName + '.' + kLongName).c_str(), ".", 0, 0);
         },
         1},
        {"compare", [](cRecord& r, const auto&) { (void)(r == Sample()); }, 3},
        {"dump", [](cRecord& r, const auto&) { (void)r.ToString2(2, 0); }, 2},
        {"change", [](cRecord& r, const auto& p) { r = ChangeRecord(r, p, r, kLongName, true); },
         3},
    };
    for (const auto& row : table) {
        const cRecord untouched = Sample();
        const long aliveWithSample = blocksAlive;
        long failing = 0;
        for (bool done = false; !done; ++failing) {
            cRecord record = Sample();
            const cRecord shared = record;
            allocationsLeft = failing;
            try {
                row.operation(record, path);
                done = true;
            } catch (const std::bad_alloc&) {
            }
            allocationsLeft = -1;
            ASSERT_TRUE(done || record == untouched) << row.name << ", allocation " << failing;
            ASSERT_TRUE(shared == untouched) << row.name << ", allocation " << failing;
        }
        EXPECT_GT(failing, row.allocations) << row.name;
        EXPECT_EQ(blocksAlive, aliveWithSample) << row.name;
    }
}

TEST(Memory, ARecordOnceHugeDoesNotStaySo)
{
    cRecord record;
    for (unsigned i = 0; i < 10000; ++i)
        record.AppendUIntPar("n", i, 0);
    record.Create();
    largestBlock = 0;
    record.AppendUIntPar("n", 0, 0);
    EXPECT_LT(largestBlock, 100 * sizeof(vorn::cRecordPar));
}

TEST(Memory, TraceLinesAreLostNotThrown)
{
    vorn::cUnit unit("T", vorn::LEVEL_ERROR, vorn::OUTPUT_DEFAULT);
    static int lines = 0;
    vorn::SetTraceSink([](const vorn::cUnit&, vorn::eLEVEL, const std::string&) { ++lines; });
    allocationsLeft = 0;
    vorn::_Trace(&unit, vorn::LEVEL_ERROR, kLongData.c_str());
    allocationsLeft = -1;
    EXPECT_EQ(lines, 0);
    vorn::_Trace(&unit, vorn::LEVEL_ERROR, kLongData.c_str());
    vorn::SetTraceSink({});
    EXPECT_EQ(lines, 1);
}

} // namespace
