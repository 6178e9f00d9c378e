// Edits, as the input tells them, on a pool of records that share their nodes, each mirrored on
// plain deep copies. After every step the whole pool and all handles must agree with the mirror.
#include "fuzz/input.h"

#include "vorn/vorn.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace
{

using fuzz::Require;
using vorn::cRecord;
using vorn::cRecordPar;

struct ModelPar;
using Model = std::vector<ModelPar>;

struct ModelPar {
    std::string name;
    int type = vorn::TYPE_NONE; // of an invalid handle
    std::uint64_t bits = 0;
    std::string data;
    Model nested;

    bool operator==(const ModelPar& o) const
    {
        return name == o.name && type == o.type && bits == o.bits && data == o.data &&
               nested == o.nested;
    }
};

std::size_t Size(const Model& model)
{
    std::size_t size = model.size();
    for (const ModelPar& par : model)
        size += Size(par.nested);
    return size;
}

bool Same(const cRecord& record, const Model& model);

bool Same(const cRecordPar& par, const ModelPar& model)
{
    cRecord nested;
    if (par.GetType(1) != model.type || par.IsValid() != (model.type != vorn::TYPE_NONE) ||
        par.GetName() != model.name || par.GetUInt64() != model.bits)
        return false;
    return std::string(par.GetData() != nullptr ? par.GetData() : "",
                       static_cast<std::size_t>(par.GetSize())) == model.data &&
           par.GetRecord(nested) == (model.type == vorn::TYPE_RECORD) && Same(nested, model.nested);
}

bool Same(const cRecord& record, const Model& model)
{
    return std::equal(record.begin(), record.end(), model.begin(), model.end(),
                      [](const cRecordPar& a, const ModelPar& b) { return Same(a, b); });
}

cRecord Build(const Model& model);

void AppendTo(cRecord& record, const ModelPar& par)
{
    const char* const name = par.name.c_str();
    if (par.type == vorn::TYPE_SINT)
        record.AppendSIntPar(name, static_cast<int>(par.bits), 0);
    else if (par.type == vorn::TYPE_UINT64)
        record.AppendUInt64Par(name, par.bits, 0);
    else if (par.type == vorn::TYPE_DATA)
        record.AppendDataPar(name, par.data.data(), static_cast<int>(par.data.size()), 0);
    else
        record.AppendRecordPar(name, Build(par.nested), 0);
}

cRecord Build(const Model& model)
{
    cRecord record;
    for (const ModelPar& par : model)
        AppendTo(record, par);
    return record;
}

class Editor
{
public:
    explicit Editor(test::Choices c) : choices(std::move(c)) {}

    void Step()
    {
        static constexpr struct {
            const char* name;
            void (Editor::*step)();
        } kSteps[] = {
            {"append", &Editor::Append},    {"append record", &Editor::AppendRecord},
            {"assign", &Editor::Assign},    {"delete", &Editor::Delete},
            {"look up", &Editor::LookUp},   {"walk", &Editor::Walk},
            {"take out", &Editor::TakeOut}, {"create", &Editor::Create},
            {"compare", &Editor::Compare},  {"change", &Editor::Change},
            {"build", &Editor::BuildFast},  {"append record", &Editor::AppendRecord},
        };
        const auto& row = kSteps[Pick(std::size(kSteps))];
        at = Pick(kPool);
        from = Pick(kPool);
        (this->*row.step)();
        for (std::size_t i = 0; i < kPool; ++i) {
            Require(Same(aRecords[i], aModels[i]), "a record is like its model", row.name);
            Require(Same(aHandles[i], aModelHandles[i]), "a handle is like its model", row.name);
        }
    }

private:
    static constexpr std::size_t kPool = 5;
    static constexpr std::size_t kMostParameters = 60;

    std::size_t Pick(std::size_t n) { return choices.Below(static_cast<unsigned>(n)); }

    // Names around the longest that is held in place, and the longest at all.
    std::string Name()
    {
        static const std::string names[] = {
            "", "a", "b", std::string(25, 'c'), std::string(26, 'd'), std::string(127, 'e')};
        return names[Pick(std::size(names))];
    }

    static Model::const_iterator Find(const Model& model, const std::string& name)
    {
        return std::find_if(model.begin(), model.end(),
                            [&](const ModelPar& par) { return par.name == name; });
    }
    static ModelPar Get(const Model& model, const std::string& name)
    {
        const auto it = Find(model, name);
        return it != model.end() ? *it : ModelPar();
    }

    ModelPar Leaf()
    {
        static constexpr int kTypes[] = {vorn::TYPE_SINT, vorn::TYPE_UINT64, vorn::TYPE_DATA};
        ModelPar par;
        par.name = Name();
        par.type = kTypes[Pick(std::size(kTypes))];
        if (par.type == vorn::TYPE_DATA)
            par.data.assign(17 + Pick(7), 'x'); // around the most that is held in place
        else
            par.bits = par.type == vorn::TYPE_SINT ? std::uint64_t{0} - Pick(3) : Pick(3);
        return par;
    }

    void Append()
    {
        aModels[at].push_back(Leaf());
        AppendTo(aRecords[at], aModels[at].back());
    }

    void AppendRecord() // also a record to itself, under a name that stands in it
    {
        if (Size(aModels[at]) + Size(aModels[from]) >= kMostParameters)
            return Create();
        const bool first = !aModels[at].empty();
        const std::string name = first ? aModels[at].front().name : Name();
        aRecords[at].AppendRecordPar(first ? aRecords[at].begin()->GetName() : name.c_str(),
                                     aRecords[from], 0);
        aModels[at].push_back({name, vorn::TYPE_RECORD, 0, "", Model(aModels[from])});
    }

    void Assign()
    {
        if (Pick(2) == 0)
            aRecords[at] = aRecords[from];
        else
            aRecords[at] = cRecord(aRecords[from]);
        aModels[at] = Model(aModels[from]);
    }

    void Create()
    {
        aRecords[at].Create();
        aModels[at].clear();
    }

    void Delete()
    {
        const std::string name = Name();
        Model& model = aModels[at];
        aRecords[at].DeletePar(name.c_str(), 0, 0);
        if (const auto it = Find(model, name); it != model.end())
            model.erase(it);
    }

    void LookUp() // by a path of one to three names
    {
        const std::string separator = Pick(2) == 0 ? "." : "::";
        std::string path = Name();
        ModelPar found = Get(aModels[at], path);
        for (std::size_t levels = Pick(3); levels > 0; --levels) {
            const std::string name = Name();
            path += separator + name;
            found = Get(Model(found.nested), name);
        }
        aHandles[from] = aRecords[at].GetFirstParByPath(path.c_str(), separator.c_str(), 0, 0);
        aModelHandles[from] = found;
    }

    void Walk() // by name or through all, from the first or from one reached by iteration
    {
        const cRecord& record = aRecords[at];
        const bool any = Pick(2) == 0;
        const std::string name = Name();
        const char* const wanted = any ? nullptr : name.c_str();
        std::vector<std::size_t> expected;
        for (std::size_t i = 0; i < aModels[at].size(); ++i) {
            if (any || aModels[at][i].name == name)
                expected.push_back(i);
        }
        Require(record.GetParCount(wanted, 0, 0) == static_cast<int>(expected.size()),
                "parameters are counted");
        cRecordPar par = record.GetFirstPar(wanted, 0, 0);
        for (const std::size_t i : expected) {
            Require(Same(par, aModels[at][i]), "the walk meets each parameter");
            if (Pick(2) == 0)
                par = record.begin()[i];
            record.SeekNextPar(par, wanted, 0, 0);
        }
        Require(!par.IsValid(), "the walk ends");
        Require(!record.SeekNextPar(par, nullptr, 0, 0), "an ended walk stays ended");
    }

    // Names that a builder knows; null for a longer one.
    static const vorn::cParName* ShortName(const std::string& name)
    {
        static constexpr vorn::cParName names[] = {"", "a", "b", "ccccccccccccccccccccccccc"};
        const auto* const it = std::find_if(std::begin(names), std::end(names),
                                            [&](const char* known) { return name == known; });
        return it != std::end(names) ? it : nullptr;
    }

    // Appends to the builder's open record all that has a short name, and takes the rest out of the
    // model.
    void AppendAll(vorn::cRecordBuilder& builder, Model& model)
    {
        model.erase(
            std::remove_if(model.begin(), model.end(),
                           [](const ModelPar& par) { return ShortName(par.name) == nullptr; }),
            model.end());
        for (ModelPar& par : model) {
            const vorn::cParName& name = *ShortName(par.name);
            if (par.type == vorn::TYPE_SINT) {
                builder.AppendSIntPar(name, static_cast<int>(par.bits), 0);
            } else if (par.type == vorn::TYPE_UINT64) {
                builder.AppendUInt64Par(name, par.bits, 0);
            } else if (par.type == vorn::TYPE_DATA) {
                builder.AppendDataPar(name, par.data.data(), static_cast<int>(par.data.size()), 0);
            } else {
                builder.Open();
                builder.Expect(Pick(6));
                AppendAll(builder, par.nested);
                builder.AppendRecordPar(name, builder.Close(), 0);
            }
        }
    }

    void BuildFast() // the model of another record, with one copy before it is complete
    {
        Model model(aModels[from]);
        vorn::cRecordBuilder builder;
        builder.Open();
        AppendAll(builder, model);
        aRecords[at] = builder.Copy(0);
        aModels[at] = model;
        if (Pick(4) == 0) {
            builder.Clear(0);
            model.clear();
        }
        model.push_back({"a", vorn::TYPE_UINT64, 1, "", {}});
        builder.AppendUInt64Par("a", 1, 0);
        const vorn::cRecordBuilder::cPart part = builder.Close();
        if (from != at) {
            aRecords[from] = builder.Get(part);
            aModels[from] = model;
        }
    }

    void TakeOut() // the record inside a handle, whatever became of its owner
    {
        if (aHandles[from].GetRecord(aRecords[at]))
            aModels[at] = Model(aModelHandles[from].nested);
        if (Pick(2) == 0) {
            aHandles[from] = aHandles[at];
            aModelHandles[from] = ModelPar(aModelHandles[at]);
        }
    }

    void Compare()
    {
        Require((aRecords[at] == aRecords[from]) == (aModels[at] == aModels[from]),
                "records compare like their models");
        const cRecord rebuilt = Build(aModels[at]);
        Require(rebuilt == aRecords[at], "a rebuilt record is equal");
        Require(rebuilt.ToString() == aRecords[at].ToString(), "equal records have one dump");
        Require((aHandles[at] == aHandles[from]) == (aModelHandles[at] == aModelHandles[from]),
                "handles compare like their models");
    }

    void Change() // along a path of up to two levels, with and without keys
    {
        if (Size(aModels[at]) + Size(aModels[from]) >= kMostParameters)
            return;
        vorn::cRecordPath path;
        Model changed(aModels[at]);
        Model* level = &changed;
        for (std::size_t levels = Pick(3); levels > 0; --levels) {
            const std::string name = Pick(4) == 0 ? "." : Name();
            Model key;
            if (Pick(2) == 0)
                key.push_back(Leaf());
            if (Pick(2) == 0 && level != nullptr && !level->empty()) // a key that fits
                key = level->back().nested.empty() ? key : Model{level->back().nested.back()};
            path.AddLevel(name.c_str(), Build(key));
            if (name != "." && level != nullptr)
                level = Descend(*level, name, key);
        }
        const std::string name = Name();
        const bool flag = Pick(2) == 0;
        if (level != nullptr)
            Replace(*level, name, flag);
        aRecords[at] = ChangeRecord(aRecords[at], path, aRecords[from], name, flag);
        aModels[at] = changed;
    }

    static Model* Descend(Model& level, const std::string& name, const Model& key)
    {
        for (ModelPar& par : level) {
            if (par.name == name && par.type == vorn::TYPE_RECORD &&
                std::all_of(key.begin(), key.end(),
                            [&](const ModelPar& k) { return Get(par.nested, k.name) == k; }))
                return &par.nested;
        }
        return nullptr;
    }

    void Replace(Model& level, const std::string& name, bool flag)
    {
        const Model content(aModels[from]);
        const auto it = level.begin() + (Find(level, name) - level.cbegin());
        if (name.empty())
            level = content;
        else if (it != level.end() && it->type == vorn::TYPE_RECORD)
            it->nested = content;
        else if (it == level.end() && flag)
            level.push_back({name, vorn::TYPE_RECORD, 0, "", content});
    }

    test::Choices choices;
    std::size_t at = 0;
    std::size_t from = 0;
    cRecord aRecords[kPool];
    Model aModels[kPool];
    cRecordPar aHandles[kPool];
    ModelPar aModelHandles[kPool];
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    Editor editor(input.Front());
    while (!input.IsEmpty())
        editor.Step();
    return 0;
}
