#include "platform/media/MediaModule_p.h"

#include "platform/files/LoadedModule.h"

namespace lamina {

Result<const MediaModule*> mediaModule()
{
    static const Result<const MediaModule*> module =
        loadModule<MediaModule>({"lamina-media.so", kMediaModuleEntry, "videos"});
    return module;
}

} // namespace lamina
