#include "platform/base/FreeMemory.h"

#include <malloc.h>

namespace lamina {

void returnFreeMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace lamina
