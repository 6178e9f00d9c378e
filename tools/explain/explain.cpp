// See explain.h.
#include "tools/explain/explain.h"

#include "tools/explain/explainer.h"
#include "tools/explain/writers.h"
#include "tools/output/terminal.h"
#include "tools/output/whole_file.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace tool
{
namespace
{

// A file that is there is written over when it is a page already, or is empty: it may have been
// named by mistake.
bool MayBecomePage(const std::string& name)
{
    constexpr std::string_view kBegin = "<!DOCTYPE html>";
    std::error_code none;
    if (!std::filesystem::is_regular_file(name, none))
        return true;
    std::string begin(kBegin.size(), '\0');
    std::ifstream(name, std::ios::binary).read(begin.data(), static_cast<long>(begin.size()));
    return begin == kBegin || std::filesystem::file_size(name, none) == 0;
}

int ExplainOnPage(const InputOptions& inputs, eINPUT kind, const std::string& page)
{
    cReport report;
    report.SetSubject(page);
    if (!MayBecomePage(page)) {
        report.Say(EXIT_FAILED, "is no page, and is not written over; name another FILE");
        return report.Status();
    }
    if (const int error = WhyNotWritable(page)) {
        report.Say(EXIT_FAILED, "cannot be written: %s", std::strerror(error));
        return report.Status();
    }
    cOutput text(STDOUT_FILENO); // which is never written there
    cOutput out(STDOUT_FILENO);  // nothing goes there
    const std::unique_ptr<cExplanationWriter> writer = MakePageWriter(text);
    cExplainer explainer(kind, *writer, report);
    PumpInputs(inputs, explainer, out, report);
    report.SetSubject(page);
    if (text.Text().empty())
        report.Say(EXIT_FAILED, "not written, since not all inputs could be read to their end");
    else if (const int error = WriteWhole(page, text.Text()))
        report.Say(EXIT_FAILED, "cannot be written: %s", std::strerror(error));
    return report.Status();
}

} // namespace

int Explain(const InputOptions& inputs, eINPUT kind, const std::string& page)
{
    if (!page.empty() && page != "-")
        return ExplainOnPage(inputs, kind, page);
    cReport report;
    cOutput out(STDOUT_FILENO);
    const std::unique_ptr<cExplanationWriter> writer =
        page.empty() ? MakeTextWriter(out, WantsColour(STDOUT_FILENO)) : MakePageWriter(out);
    cExplainer explainer(kind, *writer, report);
    return PumpInputs(inputs, explainer, out, report);
}

} // namespace tool
