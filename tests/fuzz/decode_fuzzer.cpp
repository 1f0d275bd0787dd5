// One libFuzzer target per format: LAMINA_FUZZ_FORMAT names its PictureFormat.

#include "DecodeCheck.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace lamina;
    const std::span<const std::uint8_t> bytes(data, size);
    if (!LAMINA_FUZZ_FORMAT.recognizes(bytes.first(std::min<std::size_t>(size, 64))))
        return 0;
    for (const int shortSide : {0, 5}) {
        DecodeOptions options;
        options.memoryLimit = kFuzzMemoryLimit;
        options.shortSide = shortSide;
        const auto source = memorySource(bytes);
        if (const std::string fault = faultOf(LAMINA_FUZZ_FORMAT.decode(*source, options)); !fault.empty()) {
            std::fprintf(stderr, "%s: %s\n", LAMINA_FUZZ_FORMAT.name, fault.c_str());
            std::abort();
        }
    }
    return 0;
}
