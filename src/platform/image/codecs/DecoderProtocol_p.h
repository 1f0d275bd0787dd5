#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// What this process and the program that decodes say to each other: plain values of one machine. The pixels are not
/// among them; they go into memory that is sent with the request.
namespace lamina::decoder {

inline constexpr const char* kProgram = "lamina-decoder";

enum class Format : std::uint32_t { HEIC, TIFF };
enum class Part : std::uint32_t { Picture, Thumbnail };

/// With two descriptors: the file, and memory for the pixels.
struct Request {
    Format format = Format::HEIC;
    Part part = Part::Picture;
    std::int32_t shortSide = 0;
    std::uint32_t wantsWarning = 0;
    std::uint64_t memoryLimit = 0;
    std::uint64_t fileBytes = 0;
    std::uint64_t pixelBytes = 0; ///< size of the memory for them
};

/// A sentence; what is longer is cut.
class Sentence {
public:
    Sentence() = default;
    explicit Sentence(std::string_view text);
    /// As it may be shown; nothing where it can't be one: without an end, or with anything but printable ASCII.
    std::optional<std::string> text() const;

private:
    std::array<char, 160> m_characters{}; ///< with a 0 at its end
};

struct Answer {
    std::uint32_t isPicture = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint32_t alphaInfo = 0;
    std::int32_t orientation = 0;
    Sentence cause;
    Sentence warning; ///< empty where there is none
};

/// An answer that a program of ours would give to this request: a picture's size fits the memory that it got, and all
/// else is one of the values that there are.
bool isPossible(const Answer& answer, const Request& request);

/// The pixels' size.
std::uint64_t pixelBytes(const Answer& answer);

} // namespace lamina::decoder
