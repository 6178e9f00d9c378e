// See keys.h.
#include "tools/reading/keys.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace tool
{

using quarn::schema::Element;
using quarn::schema::eTYPE;
using quarn::schema::Structure;
using quarn::schema::VisitStructures;

const Element* FindElement(const Structure* structure, std::string_view label)
{
    static const auto kIndex = [] {
        std::unordered_map<std::string_view, const Element*> index;
        VisitStructures([&index](const Structure& each) {
            for (const Element& element : each) {
                const Element*& known = index[element.label];
                if (known == nullptr || element.eType == eTYPE::VALUE)
                    known = &element;
            }
        });
        return index;
    }();
    if (structure != nullptr) {
        for (const Element& element : *structure) {
            if (element.label == label)
                return &element;
        }
    }
    const auto found = kIndex.find(label);
    return found != kIndex.end() ? found->second : nullptr;
}

bool IsList(std::string_view label)
{
    static const auto kLabels = [] {
        std::vector<std::string_view> labels;
        VisitStructures([&labels](const Structure& each) {
            for (const Element& element : each) {
                if (element.pStructure != nullptr && element.pStructure->IsList())
                    labels.push_back(element.label);
            }
        });
        std::sort(labels.begin(), labels.end());
        labels.erase(std::unique(labels.begin(), labels.end()), labels.end());
        return labels;
    }();
    return std::find(kLabels.begin(), kLabels.end(), label) != kLabels.end();
}

} // namespace tool
