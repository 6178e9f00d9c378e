// Parameter trees: a node holds a name, a value and a list of child nodes, each again a node. The
// nodes and child lists of all levels lie on the engine's stack of frames, level L's node at frame
// 3 + 2L and the list around it one below.
//
// A value longer than one chunk is delivered in packets. Each carries the tree so far, with the
// chunk as the value of its node; with the last piece everything that was read has been delivered,
// and the records of all levels begin anew.
#include "quarn/parser/engine.h"

#include "quarn/parser/tree_path.h"

using namespace quarn::detail;
namespace schema = quarn::schema;

namespace
{

constexpr std::uint32_t kFirstNode = 3; // frame of the level-0 node

// By the tag of a node's value.
constexpr const char* kValueChoices[] = {
    "Tree: Val-Choice: n/a, smlp[%d]",         "Tree: Val-Choice: Value, smlp[%d]",
    "Tree: Val-Choice: PeriodEntry, smlp[%d]", "Tree: Val-Choice: TupelEntry, smlp[%d]",
    "Tree: Val-Choice: Time, smlp[%d]",        "Tree: Val-Choice: ListEntry, smlp[%d]",
};

enum eTREE_VALUE : unsigned char {
    TREE_NONE = 0,
    TREE_VALUE = 1,
    TREE_PERIOD_ENTRY = 2,
    TREE_TUPEL_ENTRY = 3,
    TREE_TIME = 4,
    TREE_LIST_ENTRY = 5
};

} // namespace

const cSMLP::Layout cSMLP::Tables::kTreePath{
    aTreePath.data(), 0, {RC_TREE_PATH_TYPE, "TreePath:Seq-Type, smlp[%d]"}, {}, {}};
const std::array<cSMLP::Field, 1> cSMLP::Tables::aTreePath = {
    Field::String().Kept(Keep::IfSet).Over(schema::kPathElement),
};

constexpr std::array<cSMLP::Field, 3> cSMLP::Tables::aTree =
    Fields(schema::aTree,
           {
               Field::String().Kept(Keep::IfSet).Then(&cSMLP::TellParName),
               Field::Structure(kProcParValue).Kept(Keep::IfSet).Then(&cSMLP::CheckTreeValue),
               Field::Structure(kChildList)
                   .ReadBy(&cSMLP::ReadChildList)
                   .Kept(Keep::IfSet)
                   .Then(&cSMLP::TellChildList),
           });
const cSMLP::Layout cSMLP::Tables::kTree =
    Layout{aTree.data(),
           aTree.size(),
           {RC_TREE_TYPE, "Tree:Seq-Type, smlp[%d]"},
           {RC_TREE_COUNT, "Tree:Seq-Cnt, smlp[%d]"},
           {RC_NOT_OPTIONAL, "Tree:Optional not supported!, smlp[%d]"}};

const cSMLP::Layout cSMLP::Tables::kProcParValue{
    aProcParValue.data(),
    aProcParValue.size(),
    {RC_PROC_PAR_TYPE, "ProcParValue:Seq-Type, smlp[%d]"},
    {RC_PROC_PAR_COUNT, "ProcParValue:Seq-Cnt, smlp[%d]"},
    {},
    nullptr,
    nullptr,
    &cSMLP::TellProcParStop};
const std::array<cSMLP::Field, 2> cSMLP::Tables::aProcParValue = {
    Tag()
        .Refused({RC_VALUE_CHOICE_TYPE, "ProcParValue:Choice-Type, smlp[%d]"},
                 {RC_VALUE_CHOICE_LENGTH, "ProcParValue:Choice-Cnt, smlp[%d]"})
        .Kept(Keep::Always)
        .Then(&cSMLP::CheckProcParChoice),
    Field::Of(&cSMLP::ReadTreeValue)
        .Kept(Keep::Always)
        .Then(&cSMLP::KeepProcParValue)
        .Over(schema::aProcParValue[0])
        .Required(), // but for a plain value
};

const cSMLP::Layout cSMLP::Tables::kChildList{
    aChildList.data(), 0, {RC_TREE_LIST_TYPE, "ListOfTree:Seq-Type, smlp[%d]"}, {}, {}};
const std::array<cSMLP::Field, 1> cSMLP::Tables::aChildList = {
    Field::Structure(kTree).Kept(Keep::Always).Over(schema::kTreeElement),
};

// ---- A node's parts

// Level of the node that is being read, or whose part the innermost structure is.
std::uint32_t cSMLP::TreeLevel() const noexcept { return (uiDepth - kFirstNode) / 2; }

int cSMLP::TellParName()
{
    ucProcParChoice = TREE_NONE;
    Say(kDetail, "Tree: parName set (level:%d, smlp[%d]", TreeLevel());
    return RC_DONE;
}

int cSMLP::CheckProcParChoice()
{
    if (ullInteger < TREE_VALUE || ullInteger > TREE_LIST_ENTRY) {
        bProcParValSet = false;
        ucProcParChoice = static_cast<unsigned char>(ullInteger);
        return RC_VALUE_CHOICE_VALUE;
    }
    ucProcParChoice = static_cast<unsigned char>(ullInteger);
    bProcParValSet = true;
    Say(kDetail, kValueChoices[ucProcParChoice]);
    return RC_DONE;
}

// Of stops inside a node's value: of its choice in one way, of a value, be it a list type, in
// another. The other structures speak for themselves.
void cSMLP::TellProcParStop(const Frame& frame, int rc)
{
    const bool choice = frame.uiIndex < 2;
    if (!choice && ucProcParChoice != TREE_VALUE)
        return;
    if (rc == RC_VALUE_CHOICE_VALUE) {
        Say(kError, "Tree:Val-Choice!, smlp[%d]");
    } else if (choice) {
        if (rc == RC_STORE_FULL)
            Say(kError, "Tree:RAW-Buff-Ovfl in ProcParValue, smlp[%d]");
        else if (rc != RC_INPUT_EMPTY)
            Say(kError, "Tree:Wrong ProcParValue, smlp[%d]");
    } else if (rc == RC_INPUT_EMPTY) {
        Say(kDetail, "Tree: parValue: Input empty, smlp[%d]");
    } else if (rc == RC_STORE_FULL) {
        Say(kAnomaly, "Tree: parValue: Output full, smlp[%d]");
    } else if (rc != RC_CHUNK) {
        Say(kAnomaly, "Tree: parValue: rc=%d, smlp[%d]", rc);
    }
}

int cSMLP::ReadTreeValue(const Field& field)
{
    switch (ucProcParChoice) {
    case TREE_PERIOD_ENTRY:
        return EnterKept(Tables::kPeriodEntry, field);
    case TREE_TUPEL_ENTRY:
        return Enter(Tables::kTupelEntry, false, false, false);
    case TREE_TIME:
        return EnterKept(Tables::kTime, field, &kLabel<label::SmlTime>);
    case TREE_LIST_ENTRY:
        return EnterKept(Tables::kListEntry, field);
    default:
        break;
    }
    const int rc = Parse_SML_Value(true);
    if (rc == RC_CHUNK) {
        if (RepeatsTooMuch())
            return RC_MESSAGE_TOO_LONG;
        recPacketTree = LinkedTree(ExtendedValue(true));
        bPacketTree = true;
    }
    if (rc != RC_DONE)
        return rc;
    if (uiTLF_Type == TLF_OCTET_STRING && uiOctStrState == 3) {
        recResultTree = LinkedTree(ExtendedValue(false));
        bResultTree = true;
        Cleanup_TreeRecords();
        bProcParValSet = false;
    } else {
        bProcParValSet = KeepValue(aFrames[uiDepth]);
    }
    return KeepProcParValue();
}

// A value that has no content is not attached to its node.
int cSMLP::KeepProcParValue()
{
    if (!bProcParValSet)
        aFrames[uiDepth].bFilled = false;
    return RC_DONE;
}

int cSMLP::CheckTreeValue()
{
    if (ucProcParChoice == TREE_NONE) {
        Say(kDetail, "ProcParValue: Choice is Optional, smlp[%d]");
        Say(kDetail, kValueChoices[TREE_NONE]);
    }
    return RC_DONE;
}

int cSMLP::ReadChildList(const Field& field)
{
    if (TreeLevel() + 1 == MAX_TREE_LEVEL)
        return Refuse({RC_TREE_LEVEL, "Tree:RecLevel=MAX_TREE_LEVEL, smlp[%d]"});
    return EnterKept(*field.pLayout, field);
}

int cSMLP::TellChildList()
{
    Say(kDetail,
        aFrames[uiDepth + 1].bFilled ? "Tree:child_List set on level %d, smlp[%d]"
                                     : "Tree:child_List empty on level %d, smlp[%d]",
        TreeLevel());
    return RC_DONE;
}

// ---- Long values

// The value of the node being read, with the chunk that has just arrived.
vorn::cRecord cSMLP::ExtendedValue(bool more) const
{
    vorn::cRecord value = builder.Copy(aFrames[uiDepth].uiLevel);
    value.AppendBoolPar(label::extFlag, more, 0);
    value.AppendUIntPar(label::extLen, uiTLF_Count, 0);
    value.AppendDataPar(label::value, pucString, static_cast<int>(uiStringLen), 0);
    return value;
}

// A packet repeats the nodes that stand beside those on the way to its value. Told again by each of
// many packets they would take memory without bound: a message may repeat one node for each of its
// bytes, which a tree of up to SML_VALUE_CHUNK nodes never exceeds.
bool cSMLP::RepeatsTooMuch()
{
    for (std::uint32_t depth = uiDepth - 1; depth > kFirstNode; depth -= 2)
        ullRepeated += builder.Count(aFrames[depth - 1].uiLevel);
    return ullRepeated > std::uint64_t{uiPaketBytes} + StoreUsed();
}

// The tree as far as it has been read, from the root to the node whose value is procParVal.
vorn::cRecord cSMLP::LinkedTree(const vorn::cRecord& procParVal) const
{
    std::uint32_t depth = uiDepth - 1;
    vorn::cRecord node = builder.Copy(aFrames[depth].uiLevel);
    node.AppendRecordPar(label::procParVal, procParVal, 0);
    for (; depth > kFirstNode; depth -= 2) {
        vorn::cRecord list = builder.Copy(aFrames[depth - 1].uiLevel);
        list.AppendRecordPar(label::parTree, node, 0);
        node = builder.Copy(aFrames[depth - 2].uiLevel);
        node.AppendRecordPar(label::child_List, list, 0);
    }
    return node;
}

void cSMLP::Cleanup_TreeRecords() noexcept
{
    for (std::uint32_t depth = kFirstNode; depth <= uiDepth; ++depth) {
        Frame& frame = aFrames[depth];
        if (frame.pLayout != &Tables::kTree && frame.pLayout != &Tables::kChildList)
            break; // the value of a node, or no tree at all
        builder.Clear(frame.uiLevel);
        frame.bFilled = false;
        frame.bDelivered = true;
    }
}

// Adds to the body of a packet what has become ready of a tree.
void cSMLP::AppendPacketTree(vorn::cRecord& body)
{
    if (!bResultTree && !bPacketTree)
        return;
    if (bResultTree)
        body.AppendRecordPar(label::parTree, recResultTree, 0);
    if (bPacketTree)
        body.AppendRecordPar(label::parTree, recPacketTree, 0);
    body.AppendUIntPar(label::extMsgPart, uiPaketNo, 0);
    bResultTree = bPacketTree = false;
    recResultTree.Create();
    recPacketTree.Create();
}

// The end of a message's tree, its body's last field: what was not delivered in packets goes into
// the body.
int cSMLP::KeepTree()
{
    const Frame& tree = aFrames[uiDepth + 1];
    if (!bPaket) {
        if (tree.bFilled)
            Target().AppendRecordPar(kLabel<label::parTree>, partDone, 0);
        return RC_DONE;
    }
    recBody = Body();
    if (bResultTree)
        recBody.AppendRecordPar(label::parTree, recResultTree, 0);
    if (tree.bFilled)
        recBody.AppendRecordPar(label::parTree, builder.Get(partDone), 0);
    recBody.AppendUIntPar(label::extMsgPart, uiPaketNo, 0);
    bBodyDone = true;
    bResultTree = false;
    recResultTree.Create();
    return RC_DONE;
}
