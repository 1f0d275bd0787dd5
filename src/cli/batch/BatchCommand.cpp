#include "cli/batch/BatchCommand.h"

#include "cli/batch/BatchList.h"
#include "cli/batch/BatchProgress.h"
#include "cli/batch/BatchRun.h"
#include "cli/batch/OutputPattern.h"
#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"
#include "cli/common/Messages.h"
#include "cli/common/PictureInput.h"
#include "cli/common/PictureOutput.h"
#include "platform/base/Causes.h"
#include "platform/base/MemoryGate.h"
#include "platform/base/Result.h"
#include "platform/files/FileBatch.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileReading.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/Option.hpp>
#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iterator>
#include <new>
#include <span>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <variant>

namespace lamina {

namespace {

/// The folder of what is to be written, where it isn't there; its own folder must be.
Outcome makeFolder(const std::string& pattern)
{
    const std::filesystem::path folder = std::filesystem::path(pattern).parent_path();
    std::error_code error;
    if (!folder.empty())
        std::filesystem::create_directory(folder, error);
    return error ? Outcome(Error{folder.string(), writingFailure(error.value())}) : success();
}

/// Whether a decoder would go to work on the file.
bool isPicture(const std::string& path)
{
    std::array<std::uint8_t, 64> head{};
    const Result<OpenedFile> file = openFileForReading(path);
    const ssize_t known = file ? ::read(file->descriptor.get(), head.data(), head.size()) : 0;
    return known > 0 && pictureFormatForHead(std::span(head).first(static_cast<std::size_t>(known)));
}

/// What a file's work says, which is a message of that file, whatever it names itself.
Error ofFile(const std::string& file, const Error& error)
{
    return {file, error.subject == file ? error.cause : error.subject + ": " + error.cause};
}

} // namespace

BatchCommand::BatchCommand(CLI::App& application, const std::string& name, const std::string& about)
    : PictureCommand(application, name, about)
{
}

void BatchCommand::addBatch()
{
    options()
        .add_option("--each", m_each,
                    "Many pictures, all names up to the next option; each becomes a file, as in -o FOLDER/{name}.jpg")
        ->type_name("FILE");
    options()
        .add_option("--from", m_list,
                    "The same for the names in a list, one a line or ended by NUL bytes; - is standard input")
        ->type_name("LIST");
    options()
        .add_option("--shard", m_shard, "Of many pictures every N-th, beginning with the K-th: a part of the work")
        ->type_name("K/N")
        ->check(checkedBy(parseShard));
}

Outcome BatchCommand::checkOutput() const
{
    if (!isBatch())
        return PictureCommand::checkOutput();
    if (output() == "-")
        return Error{name(), "many pictures can't go to standard output; write FOLDER/{name}.jpg, for instance"};
    const Result<OutputPattern> pattern = OutputPattern::parse(output());
    return pattern ? success() : Outcome(pattern.error());
}

DecodeOptions BatchCommand::decodeOptions() const
{
    return {.memoryLimit = memoryLimit()};
}

ExitCode BatchCommand::run()
{
    if (isBatch())
        return runBatch();
    if (!m_shard.empty())
        return fail({"--shard", "is a part of many pictures: name them with --each or --from"}, ExitCode::Usage);
    return PictureCommand::run();
}

Outcome BatchCommand::checkBatch()
{
    if (Outcome checked = check(); !checked)
        return checked;
    const std::vector<std::string> shared = inputs();
    if (m_list == "-" && std::ranges::find(shared, "-") != shared.end())
        return Error{name(), "standard input can be only one of the list and the pictures"};
    return success();
}

Result<std::vector<std::string>> BatchCommand::listNames() const
{
    std::vector<std::string> names = m_each;
    if (m_list.empty())
        return names;
    Result<std::vector<std::string>> listed = readNameList(m_list);
    if (!listed)
        return listed;
    names.insert(names.end(), std::make_move_iterator(listed->begin()), std::make_move_iterator(listed->end()));
    return names;
}

ExitCode BatchCommand::runBatch()
{
    if (const Outcome checked = checkBatch(); !checked)
        return fail(checked.error(), ExitCode::Usage);
    const Result<std::vector<std::string>> names = listNames();
    if (!names)
        return fail(names.error(), ExitCode::Input);
    Result<std::vector<BatchFile>> files = planBatch(*names, output());
    if (!files)
        return fail(files.error(), ExitCode::Usage);
    if (!m_shard.empty()) {
        const Shard shard = *parseShard(m_shard);
        std::size_t place = 0;
        std::erase_if(*files, [&](const BatchFile&) { return !shard.takes(place++); });
    }
    if (files->empty())
        return ExitCode::Good;
    Result<std::vector<UIImage>> shared = read();
    if (!shared)
        return fail(shared.error(), ExitCode::Input);
    if (const Outcome ready = prepare(std::move(*shared)); !ready)
        return fail(ready.error(), ExitCode::Failed);
    if (const Outcome folder = makeFolder(output()); !folder)
        return fail(folder.error(), ExitCode::Output);
    return workOn(*files);
}

struct BatchCommand::Run {
    MemoryGate gate;
    BatchProgress progress;
    FileBatch written{};
    OrderedOutput reports{[this](const std::string& text) { return progress.print(text); }};
};

std::size_t BatchCommand::memoryForUnknown(const std::string& path) const
{
    return isPicture(path) ? memoryLimit() : 0;
}

ExitCode BatchCommand::workOn(const std::vector<BatchFile>& files)
{
    Run run{.gate = MemoryGate(memoryLimit()), .progress = BatchProgress(files.size(), !isQuiet())};
    workOnAll(files.size(), [&](std::size_t index) {
        // Nobody gets what would only be reported.
        if (files[index].output.empty() && !run.reports.isGood())
            return;
        const Result<std::string> report = process(files[index], run);
        if (!report)
            run.progress.failed(report.error());
        run.reports.put(index, report ? *report : std::string());
        run.progress.done();
    });
    for (const Error& unwritten : run.written.finish())
        run.progress.failed(unwritten);
    run.progress.finish();
    if (!run.reports.isGood())
        return ExitCode::Output;
    return run.progress.failures() > 0 ? ExitCode::Failed : ExitCode::Good;
}

Outcome BatchCommand::write(const UIImage& picture, const BatchFile& file, Run& run)
{
    if (file.output.empty())
        return success();
    // Where pictures replace themselves, what is done must not be lost with what is not: none waits for the others.
    return file.replacesInput ? writePicture(picture, file.output) : writePicture(picture, file.output, run.written);
}

Result<std::string> BatchCommand::process(const BatchFile& file, Run& run)
{
    try {
        const PhotoSource source{file.input, nullptr, file.input};
        const std::optional<IntSize> sides = claimedSides(source);
        const MemoryGate::Pass pass = run.gate.enter(sides ? memoryFor(*sides) : memoryForUnknown(file.input));
        std::string damage;
        DecodeOptions options = decodeOptions();
        options.warning = &damage;
        const Result<Made> made = makeOf(source, sides, options);
        if (!damage.empty())
            run.progress.warned({file.input, damage});
        if (!made)
            return ofFile(file.input, made.error());
        if (!made->warning.empty())
            run.progress.warned({file.input, made->warning});
        const Outcome written = write(made->picture, file, run);
        return written ? Result<std::string>(made->report) : written.error();
    } catch (const std::bad_alloc&) {
        return Error{file.input, cause::kNoMemory};
    } catch (const std::exception& error) {
        return Error{file.input, error.what()};
    }
}

} // namespace lamina
