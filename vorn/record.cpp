// Records and parameters over their nodes.
#include "vorn/record.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

namespace vorn
{

static_assert(sizeof(cRecordPar) <= 64, "a parameter fits one cache line");

namespace detail
{

std::size_t Node::Size(std::size_t capacity)
{
    if (capacity > std::numeric_limits<std::uint32_t>::max() / sizeof(cRecordPar))
        throw std::bad_alloc();
    return sizeof(Node) + capacity * sizeof(cRecordPar);
}

Node* Node::New(std::size_t capacity)
{
    return new (::operator new(Size(capacity))) Node(capacity);
}

Node* Node::Clear(Node* dead) noexcept
{
    for (cRecordPar* par = Pars(); uiCount > 0; --uiCount, ++par) {
        if (Node* const nested = par->Nested()) {
            par->ucType = TYPE_NONE; // its reference is taken over here
            dead = Drop(nested, dead);
        }
        par->~cRecordPar();
    }
    return dead;
}

Node* Node::Drop(Node* node, Node* dead) noexcept
{
    if (node->IsInArena()) {
        node->pArena->DropRef();
        return dead;
    }
    if (node->uiRefs.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return dead;
    node->pNextDead = dead;
    return node;
}

void Node::Release(Node* node) noexcept
{
    Node* dead = node != nullptr ? Drop(node, nullptr) : nullptr;
    while (dead != nullptr) {
        Node* const next = dead->Clear(dead->pNextDead);
        dead->~Node();
        ::operator delete(dead);
        dead = next;
    }
}

} // namespace detail

using detail::Node;

namespace
{

constexpr std::size_t kFirstCapacity = 4;

// Names are compared as they are stored: cut off at kMaxName bytes.
std::size_t NameSize(const char* name) { return ::strnlen(name, cRecordPar::kMaxName); }

template <typename T>
cMemBuffer ScalarBytes(T value)
{
    const auto bits = static_cast<std::uint64_t>(value); // signed values are sign-extended
    return {&bits, sizeof bits};
}

} // namespace

cObject::~cObject() = default;

// ---- cRecordPar

cRecordPar::cRecordPar(const char* text, std::size_t nameSize, eTYPE type, cMemBuffer value)
    : buf(std::move(value)), ucNameSize(static_cast<std::uint8_t>(nameSize)),
      ucType(static_cast<std::uint8_t>(type))
{
    if (nameSize <= kNameInPlace) {
        std::memcpy(name.acText, text, nameSize);
        return;
    }
    char whole[kMaxName + 1];
    std::memcpy(whole, text, nameSize);
    whole[nameSize] = '\0';
    new (name.acText) cMemBuffer(whole, nameSize + 1);
}

cRecordPar::cRecordPar(const cRecordPar& other) noexcept : cObject(other) { CopyFrom(other); }

cRecordPar::cRecordPar(cRecordPar&& other) noexcept : buf(std::move(other.buf)) { TakeRest(other); }

cRecordPar& cRecordPar::operator=(const cRecordPar& other) noexcept
{
    if (this != &other) {
        cRecordPar copy(other); // first, since other may live in what this handle keeps alive
        DropRefs();
        buf = std::move(copy.buf);
        TakeRest(copy);
    }
    return *this;
}

cRecordPar& cRecordPar::operator=(cRecordPar&& other) noexcept
{
    if (this != &other) {
        cRecordPar taken(std::move(other));
        DropRefs();
        buf = std::move(taken.buf);
        TakeRest(taken);
    }
    return *this;
}

cRecordPar::~cRecordPar() { DropRefs(); }

void cRecordPar::CopyFrom(const cRecordPar& other) noexcept
{
    buf = other.buf;
    ucNameSize = other.ucNameSize;
    ucType = other.ucType;
    uiPosition = other.uiPosition;
    if (HasLongName())
        new (name.acText) cMemBuffer(other.LongName());
    else
        name = other.name;
    if (Node* const nested = Nested())
        nested->AddRef();
}

void cRecordPar::TakeRest(cRecordPar& other) noexcept
{
    name = other.name; // a long name's reference moves along
    ucNameSize = std::exchange(other.ucNameSize, std::uint8_t{0});
    ucType = std::exchange(other.ucType, std::uint8_t{TYPE_NONE});
    uiPosition = other.uiPosition;
    other.name.acText[0] = '\0';
}

void cRecordPar::DropRefs() noexcept
{
    if (HasLongName())
        reinterpret_cast<cMemBuffer*>(name.acText)->~cMemBuffer();
    Node::Release(Nested());
    ucNameSize = 0;
    ucType = TYPE_NONE;
}

const cMemBuffer& cRecordPar::LongName() const noexcept
{
    return *std::launder(reinterpret_cast<const cMemBuffer*>(name.acText));
}

bool cRecordPar::HasName(const char* text, std::size_t size) const noexcept
{
    return size == ucNameSize && std::memcmp(GetName(), text, size) == 0;
}

bool cRecordPar::GetRecord(cRecord& out) const noexcept
{
    if (ucType != TYPE_RECORD)
        return false;
    Node* const nested = Nested();
    if (nested != nullptr)
        nested->AddRef();
    Node::Release(std::exchange(out.pNode, nested));
    return true;
}

// ---- cRecord

cRecord::cRecord(const cRecord& other) noexcept : pNode(other.pNode)
{
    if (pNode != nullptr)
        pNode->AddRef();
}

cRecord::cRecord(cRecord&& other) noexcept : pNode(std::exchange(other.pNode, nullptr)) {}

cRecord& cRecord::operator=(const cRecord& other) noexcept
{
    cRecord copy(other); // first, since other may live in the tree that is dropped here
    std::swap(pNode, copy.pNode);
    return *this;
}

cRecord& cRecord::operator=(cRecord&& other) noexcept
{
    cRecord taken(std::move(other));
    std::swap(pNode, taken.pNode);
    return *this;
}

cRecord::~cRecord() { Node::Release(pNode); }

void cRecord::Create() noexcept { Node::Release(std::exchange(pNode, nullptr)); }

bool cRecord::HasRoom(std::size_t capacity) const noexcept
{
    return pNode != nullptr && pNode->uiCapacity >= capacity && !pNode->IsShared();
}

void cRecord::MakeRoom(std::size_t capacity)
{
    if (HasRoom(capacity))
        return;
    const std::size_t count = pNode != nullptr ? pNode->uiCount : 0;
    if (count == 0)
        capacity = std::max(capacity, kFirstCapacity);
    else if (capacity > count)
        capacity = std::max(capacity, 2 * count);
    Node* const node = Node::New(capacity);
    if (pNode != nullptr) {
        cRecordPar* const from = pNode->Pars();
        cRecordPar* const to = node->Pars();
        const bool move = !pNode->IsShared();
        for (std::size_t i = 0; i < count; ++i) {
            if (move)
                new (to + i) cRecordPar(std::move(from[i]));
            else
                new (to + i) cRecordPar(from[i]);
        }
        node->uiCount = pNode->uiCount;
        Node::Release(pNode);
    }
    pNode = node;
}

void cRecord::Append(const char* name, eTYPE type, cMemBuffer value)
{
    if (name == nullptr)
        name = "";
    const std::size_t size = NameSize(name);
    const std::size_t count = pNode != nullptr ? pNode->uiCount : 0;
    char text[cRecordPar::kMaxName];
    if (!HasRoom(count + 1)) {
        std::memcpy(text, name, size); // it may stand in the node that is replaced here
        name = text;
        MakeRoom(count + 1);
    }
    auto* const par = new (pNode->Pars() + count) cRecordPar(name, size, type, std::move(value));
    par->uiPosition = static_cast<std::uint32_t>(count);
    ++pNode->uiCount;
}

void cRecord::AppendUIntPar(const char* name, unsigned int v, int)
{
    Append(name, TYPE_UINT, ScalarBytes(v));
}

void cRecord::AppendSIntPar(const char* name, int v, int)
{
    Append(name, TYPE_SINT, ScalarBytes(v));
}

void cRecord::AppendUInt64Par(const char* name, unsigned long long v, int)
{
    Append(name, TYPE_UINT64, ScalarBytes(v));
}

void cRecord::AppendSInt64Par(const char* name, long long v, int)
{
    Append(name, TYPE_SINT64, ScalarBytes(v));
}

void cRecord::AppendBoolPar(const char* name, bool v, int)
{
    Append(name, TYPE_BOOL, ScalarBytes(v ? 1U : 0U));
}

void cRecord::AppendDataPar(const char* name, const void* p, int size, int)
{
    const bool any = p != nullptr && size > 0;
    Append(name, TYPE_DATA, any ? cMemBuffer(p, static_cast<std::size_t>(size)) : cMemBuffer());
}

void cRecord::AppendRecordPar(const char* name, const cRecord& r, int)
{
    const cRecord copy(r); // r may be this record, or die when this record's node is copied
    Append(name, TYPE_RECORD, cMemBuffer(&copy.pNode, sizeof copy.pNode));
    if (copy.pNode != nullptr)
        copy.pNode->AddRef();
}

void cRecord::Replace(std::size_t index, const cRecord& r)
{
    const cRecord copy(r);
    MakeRoom(pNode->uiCount);
    cRecordPar& par = pNode->Pars()[index];
    Node::Release(par.Nested());
    par.buf = cMemBuffer(&copy.pNode, sizeof copy.pNode);
    if (copy.pNode != nullptr)
        copy.pNode->AddRef();
}

const cRecordPar* cRecord::Find(const char* name, std::size_t from) const noexcept
{
    const std::size_t size = name != nullptr ? NameSize(name) : 0;
    for (const cRecordPar* par = begin() + from; par < end(); ++par) {
        if (name == nullptr || par->HasName(name, size))
            return par;
    }
    return nullptr;
}

void cRecord::DeletePar(const char* name, int, int)
{
    const cRecordPar* const found = Find(name, 0);
    if (found == nullptr)
        return;
    const auto index = found - begin();
    MakeRoom(pNode->uiCount);
    cRecordPar* const last = pNode->Pars() + pNode->uiCount - 1;
    for (cRecordPar* par = pNode->Pars() + index; par != last; ++par) {
        *par = std::move(par[1]);
        --par->uiPosition;
    }
    last->~cRecordPar();
    --pNode->uiCount;
}

cRecordPar cRecord::GetFirstPar(const char* name, int, int) const
{
    const cRecordPar* const found = Find(name, 0);
    return found != nullptr ? *found : cRecordPar();
}

cRecordPar cRecord::GetFirstParByPath(const char* path, const char* separator, int, int) const
{
    const std::size_t sepSize = separator != nullptr ? std::strlen(separator) : 0;
    cRecord level(*this);
    for (;;) {
        const char* const next = sepSize != 0 && path ? std::strstr(path, separator) : nullptr;
        if (next == nullptr)
            return level.GetFirstPar(path, 0, 0);
        const std::string name(path, static_cast<std::size_t>(next - path));
        const cRecordPar* const nested = level.Find(name.c_str(), 0);
        cRecord deeper;
        if (nested == nullptr || !nested->GetRecord(deeper))
            return {};
        level = std::move(deeper);
        path = next + sepSize;
    }
}

int cRecord::GetParCount(const char* name, int, int) const noexcept
{
    if (name == nullptr)
        return static_cast<int>(end() - begin());
    const std::size_t size = NameSize(name);
    return static_cast<int>(std::count_if(
        begin(), end(), [=](const cRecordPar& par) { return par.HasName(name, size); }));
}

bool cRecord::SeekNextPar(cRecordPar& par, const char* name, int, int) const
{
    const cRecordPar* found = nullptr;
    if (par.IsValid() && par.uiPosition < static_cast<std::size_t>(end() - begin()))
        found = Find(name, std::size_t{par.uiPosition} + 1);
    par = found != nullptr ? *found : cRecordPar();
    return found != nullptr;
}

bool cRecordPar::SameLeaf(const cRecordPar& other) const noexcept
{
    return ucType == other.ucType && HasName(other.GetName(), other.ucNameSize) &&
           (ucType == TYPE_RECORD || buf == other.buf);
}

bool cRecordPar::Equals(const cRecordPar& other) const
{
    cRecord mine;
    cRecord theirs;
    if (GetRecord(mine))
        other.GetRecord(theirs);
    return SameLeaf(other) && mine == theirs;
}

bool cRecord::Equals(const cRecord& other) const
{
    std::vector<std::pair<cRecord, cRecord>> pending{{*this, other}}; // instead of a recursion
    while (!pending.empty()) {
        const auto [a, b] = std::move(pending.back());
        pending.pop_back();
        if (a.pNode == b.pNode)
            continue;
        if (a.end() - a.begin() != b.end() - b.begin())
            return false;
        for (const cRecordPar *p = a.begin(), *q = b.begin(); p != a.end(); ++p, ++q) {
            if (!p->SameLeaf(*q))
                return false;
            std::pair<cRecord, cRecord> nested;
            if (p->GetRecord(nested.first) && q->GetRecord(nested.second))
                pending.push_back(std::move(nested));
        }
    }
    return true;
}

} // namespace vorn
