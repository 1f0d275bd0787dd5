#include "cli/export/ExportDelivery.h"

#include "cli/common/Messages.h"
#include "cli/common/ProgressBar.h"
#include "platform/base/Result.h"

#include <filesystem>

namespace lamina {

namespace {

/// As whoever named the output would write it: without the "./" of the folder that was left out.
std::string plain(const std::string& path)
{
    return std::filesystem::path(path).lexically_normal().string();
}

ExitCode failure(const Error& error, const ExportJob& job, const ExportPlace& place)
{
    if (error.subject.empty())
        return fail({job.command, error.cause}, ExitCode::Failed);
    if (error.subject == job.input)
        return fail(error, ExitCode::Input);
    const std::string subject = plain(error.subject);
    const std::string folder = plain(place.folder + "/");
    const bool isOutput = subject == plain(job.output) || subject == plain(place.folder) ||
                          plain(error.subject + "/") == folder ||
                          plain(std::filesystem::path(error.subject).parent_path() / "") == folder;
    return fail({subject, error.cause}, isOutput ? ExitCode::Output : ExitCode::Failed);
}

} // namespace

ExitCode deliverExport(const ExportJob& job)
{
    const Result<ExportPlace> place = exportPlaceOf(job.output, *job.type);
    if (!place)
        return fail(place.error(), ExitCode::Usage);
    const Result<ExportedFile> file = [&] {
        ProgressBar bar(!job.isQuiet);
        ExportWatch watch;
        watch.progress = [&](double done) { bar.show(done); };
        return runExport(job.type->type, job.source, job.options, *place, watch);
    }();
    if (!file)
        return failure(file.error(), job, *place);
    if (!job.isQuiet)
        note(plain(file->path) + ": written");
    return ExitCode::Good;
}

} // namespace lamina
