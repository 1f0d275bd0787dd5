// A decoder that answers what no sound one would: the request's shorter side says what.

#include "platform/confined/ConfinedService.h"
#include "platform/confined/SharedMemory.h"
#include "platform/image/codecs/DecoderProtocol_p.h"

#include <cstdlib>
#include <cstring>

namespace {

using namespace lamina;
using namespace lamina::decoder;

constexpr int kSpin = 1;
constexpr int kDie = 2;
constexpr int kKeepPixels = 3;
/// From here on, answers that are wrong in one place.
constexpr int kLies = 4;

constexpr void (*kAnswers[])(Answer&) = {
    [](Answer&) {}, // the only one that is true
    [](Answer& answer) { answer.width = 0; },
    [](Answer& answer) { answer.height = -1; },
    [](Answer& answer) { answer.width = answer.height = 1 << 18; },
    [](Answer& answer) { answer.alphaInfo = 7; },
    [](Answer& answer) { answer.orientation = 8; },
    [](Answer& answer) { answer = {}; }, // no picture, and no cause
    [](Answer& answer) { (answer = {}).cause = Sentence("red \x1B[31m letters"); },
    [](Answer& answer) { // a cause without an end
        answer.isPicture = 0;
        std::memset(reinterpret_cast<char*>(&answer.cause), 'x', sizeof(Sentence));
    },
};

std::size_t answerTo(std::span<const std::byte> bytes, std::span<FileDescriptor> descriptors,
                     std::span<std::byte> target)
{
    Request request;
    std::memcpy(&request, bytes.data(), sizeof(request));
    if (request.shortSide == kDie)
        std::abort();
    for (volatile bool spinning = request.shortSide == kSpin; spinning;) {
    }
    constexpr std::size_t kSize = 4 * 64 * 48;
    std::uint8_t* const pixels = mapForWriting(descriptors[1].get(), kSize);
    std::memset(pixels, 255, kSize);
    if (request.shortSide != kKeepPixels)
        unmap(pixels, kSize);
    Answer answer;
    answer.isPicture = 1;
    answer.width = 64;
    answer.height = 48;
    answer.alphaInfo = static_cast<std::uint32_t>(CGImageAlphaInfo::NoneSkipLast);
    if (request.shortSide >= kLies)
        kAnswers[request.shortSide - kLies](answer);
    std::memcpy(target.data(), &answer, sizeof(answer));
    return sizeof(answer);
}

} // namespace

int main()
{
    return lamina::serveConfined({{}, answerTo, {}});
}
