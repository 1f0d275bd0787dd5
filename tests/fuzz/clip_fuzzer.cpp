// Reads movies out of memory, all the way from the container to pixels and numbers.

#include "ClipCheck.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace lamina;
    const ClipReport report = ClipCheck::read({data, size});
    if (report.fault.empty())
        return 0;
    std::fprintf(stderr, "%s\n", report.fault.c_str());
    std::abort();
}
