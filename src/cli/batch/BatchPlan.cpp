#include "cli/batch/BatchPlan.h"

#include "cli/batch/OutputPattern.h"
#include "cli/common/PictureOutput.h"
#include "platform/files/FileIdentity.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

namespace lamina {

namespace {

/// Who reads a file, by places in the list; mostly one.
struct Readers {
    std::size_t first = 0;
    std::size_t last = 0;
};

/// What the files that are read and written have to do with each other.
class Files {
public:
    explicit Files(const std::vector<std::string>& inputs)
        : m_inputs(inputs)
    {
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            if (const std::optional<FileIdentity> file = identityOf(inputs[i]))
                m_readers.try_emplace(*file, Readers{i, i}).first->second.last = i;
        }
    }

    /// Has input `i` write `file.output`; fails where that would get in the way of another.
    Outcome write(std::size_t i, BatchFile& file)
    {
        const std::string name = std::filesystem::path(file.output).lexically_normal().string();
        const std::size_t namesake = m_writersByName.try_emplace(name, i).first->second;
        if (namesake != i)
            return refusedAs(namesake, file);
        const std::optional<FileIdentity> there = identityOf(file.output);
        if (!there)
            return success();
        const Writer writer = m_writers.try_emplace(*there, Writer{i, file.output}).first->second;
        if (writer.input != i && areOne(writer.output, file.output))
            return refusedAs(writer.input, file);
        const auto readers = m_readers.find(*there);
        if (readers == m_readers.end())
            return success();
        for (const std::size_t reader : {readers->second.first, readers->second.last}) {
            if (reader != i && areOne(m_inputs[reader], file.output))
                return Error{file.input, "would replace " + m_inputs[reader] + ", another of the pictures"};
            file.replacesInput |= reader == i;
        }
        return success();
    }

private:
    struct Writer {
        std::size_t input = 0;
        std::string output;
    };

    /// Asked at one time. What was found before may have been replaced since, by another process that has its own part
    /// of the list, and its number given to another file.
    static bool areOne(const std::string& one, const std::string& other)
    {
        const std::optional<FileIdentity> file = identityOf(one);
        return file && file == identityOf(other);
    }

    Outcome refusedAs(std::size_t writer, const BatchFile& file) const
    {
        return Error{file.input, "would write " + file.output + ", as " + m_inputs[writer] + " does"};
    }

    const std::vector<std::string>& m_inputs;
    std::map<FileIdentity, Readers> m_readers;
    std::map<FileIdentity, Writer> m_writers;
    std::unordered_map<std::string, std::size_t> m_writersByName;
};

Outcome checkPattern(const OutputPattern& pattern, const std::string& text, std::size_t inputs)
{
    if (text.empty() || inputs < 2 || pattern.tellsFilesApart())
        return success();
    return Error{text, "is one name for " + std::to_string(inputs) +
                           " pictures; let each have its own, as in FOLDER/{name}.jpg"};
}

} // namespace

Result<std::vector<BatchFile>> planBatch(const std::vector<std::string>& inputs, const std::string& text)
{
    const Result<OutputPattern> pattern = OutputPattern::parse(text);
    if (!pattern)
        return pattern.error();
    if (const Outcome suits = checkPattern(*pattern, text, inputs.size()); !suits)
        return suits.error();
    Files known(inputs);
    std::vector<BatchFile> files;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (inputs[i] == "-")
            return Error{"-", "standard input can't be one of many pictures; a file of that name is ./-"};
        BatchFile& file = files.emplace_back(BatchFile{inputs[i]});
        if (text.empty())
            continue;
        file.output = pattern->nameFor(inputs[i], i, inputs.size());
        // "-" is the name of a file here.
        if (const Outcome suits = checkOutputName(file.output == "-" ? "./-" : file.output); !suits)
            return suits.error();
        if (const Outcome suits = known.write(i, file); !suits)
            return suits.error();
    }
    return files;
}

} // namespace lamina
