#pragma once

#include "platform/base/Result.h"
#include "platform/files/FileReading.h"
#include "platform/media/MediaModule_p.h"

#include <string>

namespace lamina {

/// Calls `work(module, file)` for a clip's file that stands open meanwhile; an error of it
/// without a subject is about the clip.
template <class T, class Work>
Result<T> withClip(const std::string& path, Work work)
{
    const Result<OpenedFile> file = openFileForReading(path);
    if (!file)
        return file.error();
    const Result<const MediaModule*> module = mediaModule();
    if (!module)
        return Error{path, module.error().cause};
    Result<T> result = work(**module, *file);
    if (!result && result.error().subject.empty())
        return Error{path, result.error().cause};
    return result;
}

} // namespace lamina
