#include "platform/files/GrowingFile.h"

#include "platform/files/FileCauses.h"
#include "platform/files/FilePlace_p.h"
#include "platform/files/UnfinishedFile_p.h"

#include <sys/stat.h>
#include <utility>

namespace lamina {

namespace {

constexpr mode_t kOfAnyNewFile = 0666;
/// Until it has those of the file that it replaces.
constexpr mode_t kOfOwner = 0600;

} // namespace

GrowingFile::GrowingFile(std::string path, std::string name, std::unique_ptr<UnfinishedFile> file, bool replaces)
    : m_path(std::move(path))
    , m_name(std::move(name))
    , m_file(std::move(file))
    , m_replaces(replaces)
{
}

GrowingFile::~GrowingFile() = default;

Result<std::unique_ptr<GrowingFile>> GrowingFile::make(const std::string& path, Leftover leftover)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error{path, cause::kNoFileName};
    FilePlace place;
    if (const int error = findPlace(path, place))
        return Error{path, writingFailure(error)};
    if (place.isWrittenThrough())
        return Error{path, cause::kNotRegular};
    const bool replaces = place.exists();
    auto file = std::make_unique<UnfinishedFile>(place.folder, replaces ? kOfOwner : kOfAnyNewFile,
                                                 leftover == Leftover::Kept ? place.name : std::string());
    if (replaces)
        file->take(place.existing);
    std::unique_ptr<GrowingFile> made(new GrowingFile(path, place.name, std::move(file), replaces));
    const Outcome outcome = made->outcome();
    return outcome ? Result<std::unique_ptr<GrowingFile>>(std::move(made)) : outcome.error();
}

Outcome GrowingFile::outcome() const
{
    return m_file->error() != 0 ? Outcome(Error{m_path, writingFailure(m_file->error())}) : success();
}

std::string GrowingFile::descriptorPath() const
{
    return m_file->descriptorPath();
}

const std::string& GrowingFile::temporaryName() const
{
    return m_file->name();
}

Outcome GrowingFile::finish()
{
    m_file->finish(m_replaces ? Durability::OnDevice : Durability::Ordinary);
    return outcome();
}

Outcome GrowingFile::takeName()
{
    m_file->replace(m_name);
    return outcome();
}

void GrowingFile::keep()
{
    m_file->keep();
}

} // namespace lamina
