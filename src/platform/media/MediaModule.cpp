#include "platform/media/MediaModule_p.h"

#include "platform/files/LoadedModule.h"

namespace lamina {

Result<const MediaModule*> mediaModule()
{
    static const Result<const MediaModule*> module =
        loadModule<MediaModule>({"lamina-media.so", kMediaModuleEntry, Error{{}, "support for videos is not installed"},
                                 Error{{}, "support for videos can't be loaded"}});
    return module;
}

} // namespace lamina
