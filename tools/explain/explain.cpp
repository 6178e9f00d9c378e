// See explain.h.
#include "tools/explain/explain.h"

#include "tools/explain/explainer.h"
#include "tools/explain/writers.h"
#include "tools/output/terminal.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tool
{
namespace
{

int ExplainOnPage(const InputOptions& inputs, eINPUT kind, const std::string& page)
{
    cReport report;
    const int fd = ::open(page.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    report.SetSubject(page);
    if (fd < 0) {
        report.Say(EXIT_FAILED, "cannot be written: %s", std::strerror(errno));
        return report.Status();
    }
    cOutput file(fd);
    cOutput out(STDOUT_FILENO); // nothing goes there
    const std::unique_ptr<cExplanationWriter> writer = MakePageWriter(file);
    cExplainer explainer(kind, *writer, report);
    PumpInputs(inputs, explainer, out, report);
    file.Drain();
    report.SetSubject(page);
    if (file.Error() != 0)
        report.Say(EXIT_FAILED, "cannot be written: %s", std::strerror(file.Error()));
    ::close(fd);
    return report.Status();
}

} // namespace

int Explain(const InputOptions& inputs, eINPUT kind, const std::string& page)
{
    if (!page.empty())
        return ExplainOnPage(inputs, kind, page);
    cReport report;
    cOutput out(STDOUT_FILENO);
    const std::unique_ptr<cExplanationWriter> writer =
        MakeTextWriter(out, WantsColour(STDOUT_FILENO));
    cExplainer explainer(kind, *writer, report);
    return PumpInputs(inputs, explainer, out, report);
}

} // namespace tool
