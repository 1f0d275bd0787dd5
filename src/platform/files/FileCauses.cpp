#include "platform/files/FileCauses.h"

#include <cerrno>
#include <cstring>

namespace lamina {

namespace {

std::string failure(int error)
{
    switch (error) {
    case EACCES:
    case EPERM:
        return "permission denied";
    case EISDIR:
        return cause::kIsFolder;
    case ENOSPC:
    case EDQUOT:
        return "no space left on the device";
    case EFBIG:
        return "the file is too large for the device";
    case EROFS:
        return "the device can only be read";
    case EBUSY:
    case ETXTBSY:
        return "the file is in use";
    case ELOOP:
        return "a symbolic link leads in a circle";
    case ENAMETOOLONG:
        return "the name is too long";
    default:
        return std::strerror(error);
    }
}

bool isMissing(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

} // namespace

std::string readingFailure(int error)
{
    if (error == ENXIO) // a socket, or a device without its driver
        return cause::kNotRegular;
    return isMissing(error) ? cause::kNoSuchFile : failure(error);
}

std::string writingFailure(int error)
{
    return isMissing(error) ? cause::kNoSuchFolder : failure(error);
}

} // namespace lamina
