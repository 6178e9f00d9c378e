// Memory that runs out: each allocation in turn fails, and nothing may leak, crash or throw.
#include "tests/encoder/encoder_support.h"
#include "tests/support/failing_new.h"

#include <utility>

namespace
{

using namespace test;
using vorn::cRecord;

// A byte string is too long to be held in place.
const std::string kLong = "=x" + std::string(60, 'A') + ' ';
const std::string kTime = "={type=u3 value=u7 locOffset=i60} ";
const std::string kListType = "{smlList={type=u1 SmlTime" + kTime + "}} ";
const std::string kEntry = "={objName=U1 unit=u1 scaler=i1 valTime" + kTime + "value=" + kListType +
                           "valueSignature" + kLong + "} ";
// The fields of every message but the tree.
const std::string kBody =
    "codepage" + kLong + "clientId" + kLong + "reqFileId" + kLong + "serverId" + kLong +
    "username" + kLong + "attentionMsg" + kLong + "RawData" + kLong + "globalSignature" + kLong +
    "refTime" + kTime + "beginTime" + kTime + "actTime" + kTime + "attentionNo=U1 status=U1 " +
    "parTreePath={path_Entry=U1 path_Entry=U2} object_List={object_List_Entry=U1} " +
    "valList={valListEntry" + kEntry + "valListEntry" + kEntry + "} period_List={SmlPeriodEntry" +
    kEntry + "}";

cRecord TreeOf(const std::string& value)
{
    const std::string leaf = "parTree={parName=U1 procParVal={" + value + "}} ";
    return Rec("parName=U1 child_List={" + leaf + leaf + "}");
}

using Encoder = int (*)(cRecord& body, cRecord& header, cRecord& result);

const Encoder kEncoders[] = {
    Encode_Open_Request,
    Encode_Open_Response,
    Encode_Close_Request,
    Encode_Close_Response,
    Encode_Attention_Response,
    Encode_GetProcPar_Request,
    Encode_GetProcPar_Response,
    Encode_SetProcPar_Request,
    [](cRecord& b, cRecord& h, cRecord& r) { return Encode_GetProfile_Request(b, h, r, 0x400); },
    Encode_GetProfileList_Response,
    Encode_GetList_Request,
    Encode_GetList_Response,
};

// Runs action with the first, the second, ... allocation failing, once alone and once with all that
// follow, until none does any more, and returns how many could fail. action says whether it was
// done without a lack of memory.
template <typename Action>
int FailInTurn(Action action)
{
    for (int n = 0;; ++n) {
        bool failed = false;
        bool done = true;
        for (const long failures : {1L, kAll}) {
            const long before = lBlocksInUse;
            {
                const FailingNew failing(n, failures);
                done = action() && done;
                failed = lFailuresLeft != failures;
            }
            EXPECT_EQ(lBlocksInUse, before) << "leaked when allocation " << n << " failed";
        }
        if (!failed || ::testing::Test::HasFailure()) {
            EXPECT_TRUE(done);
            return n;
        }
    }
}

class OutOfMemory : public ::testing::Test
{
protected:
    OutOfMemory()
    {
        LibSmle->iLevel = 16;
        vorn::SetTraceSink([](const vorn::cUnit&, vorn::eLEVEL, const std::string&) {});
    }
    ~OutOfMemory() override
    {
        vorn::SetTraceSink({});
        LibSmle->iLevel = 2;
    }
};

// A message is encoded in full or not at all, and then the result record is as it was. Only a trace
// line may get lost without a word.
TEST_F(OutOfMemory, EncodeFunctions)
{
    const cRecord former = Rec("old=u1");
    // Without a number in the header no message is written without making objects first.
    cRecord header = Rec("transactionId" + kLong + "groupNo=u0");
    cRecord plain = Rec("transactionId" + kLong + "groupNo=u0 abortOnError=u0");
    cRecord close;
    FailInTurn([&] {
        cRecord result = former;
        const int rc = Encode_Close_Request(close, plain, result);
        EXPECT_EQ(result.GetParCount("old", 0, 0), rc == SML_ENCODE_NO_MEMORY ? 1 : 0);
        return rc == SML_ENCODE_OK;
    });
    for (const std::string& value : {"type=u1 value=" + kListType, "type=u2 value" + kEntry,
                                     "type=u4 value={SmlTime" + kTime + "}",
                                     "type=u4 value" + kEntry, "type=u5 value" + kEntry}) {
        cRecord body = Rec(kBody);
        body.AppendRecordPar("parTree", TreeOf(value), 0);
        for (const Encoder& encode : kEncoders) {
            cRecord whole;
            ASSERT_EQ(encode(body, header, whole), SML_ENCODE_OK);
            const int failures = FailInTurn([&] {
                cRecord result = former;
                const int rc = encode(body, header, result);
                const long left = std::exchange(lAllocationsLeft, kAll); // to compare
                EXPECT_TRUE(rc == SML_ENCODE_OK ? result == whole
                                                : rc == SML_ENCODE_NO_MEMORY && result == former)
                    << rc;
                lAllocationsLeft = left;
                return rc == SML_ENCODE_OK;
            });
            EXPECT_GT(failures, 5) << "of encoder " << &encode - kEncoders;
        }
    }
}

// Objects without memory are absent or without slots, and say so.
TEST_F(OutOfMemory, Objects)
{
    Sml_Unsigned8 one(1);
    FailInTurn([&] {
        Sml_ListOf list(3, false);
        EXPECT_EQ(list.SetElement(&one, 0), list.GetCount() == 3 ? 0 : 222);
        const int rc = list.Add(&one);
        EXPECT_TRUE(rc == 0 || rc == 220) << rc;
        Sml_TreePath path(1);
        const int set = path.SetTreePath(1LL, 0);
        EXPECT_TRUE(set == 0 || set == 222 || set == 230) << set;
        return list.GetCount() == 4 && set == 0;
    });
    const std::string bytes(100, 'x');
    FailInTurn([&] {
        Sml_OctetString made(bytes.data(), 100, 2000);
        Sml_OctetString set("short", 5, -1);
        set.SetValue(bytes.data(), 100, -1);
        EXPECT_EQ(made.GetToCode(), made.GetLength() == 100);
        EXPECT_EQ(set.GetToCode(), set.GetLength() == 100);
        return made.GetToCode() && set.GetToCode();
    });
}

// The exported functions that have no result for it leave nothing behind and never throw.
TEST_F(OutOfMemory, ConvertersAndMessages)
{
    cRecord tree = TreeOf("type=u2 value" + kEntry);
    const int conversions = FailInTurn([&] {
        Sml_Tree object;
        return Record_2_SmlTree(tree, &object) == 1;
    });
    EXPECT_GT(conversions, 10);
    Sml_OctetString id("1", 1, -1);
    Sml_Unsigned8 zero(0);
    Sml_Signature absent;
    Sml_Close_Request body(&absent);
    const cRecord former = Rec("old=u1");
    Sml_Message message(&id, &zero, &zero, &body);
    FailInTurn([&] {
        cRecord result = former;
        SmlMessageToBin(message, result, 0, "x", 500);
        const int parameters = result.GetParCount(nullptr, 0, 0);
        EXPECT_TRUE(parameters == 0 || parameters == 2) << parameters;
        return parameters == 2;
    });
}

} // namespace
