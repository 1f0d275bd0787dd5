#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/media/capture/RawFrame.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lamina::test {

/// The opaque RGBA picture as a camera would lay it into memory, without padding: Y, Cb and Cr by BT.601 in video
/// range, chroma the mean of the pixels that share it.
std::vector<std::uint8_t> rawBytesOf(const CGImage& picture, RawEncoding encoding);

/// A frame that a test's camera is to fill in.
struct TestCameraFrame {
    std::uint8_t* bytes = nullptr;
    std::size_t capacity = 0;
    IntSize size;
    std::uint64_t number = 0; ///< from 0 on
    // What it says of what it has put there.
    std::uint32_t chunkOffset = 0;
    std::uint32_t chunkSize = 0; ///< at first all of the frame
    std::int32_t chunkStride = 0;
};

/// What a test's camera is.
struct TestCameraSettings {
    std::string name = "node-camera"; ///< and its unique ID
    std::string description = "Node camera";
    RawEncoding encoding = RawEncoding::YUY2;
    std::vector<IntSize> sizes = {{640, 480}, {320, 240}, {1280, 720}}; ///< its own choice first
    int frameRate = 30;
    std::string location = {}; ///< "front", "back", "external"
    int mountRotation = 0;     ///< degrees counter-clockwise, as sensors tell it
    int transform = 0;         ///< of its frames, as buffers tell it: quarters counter-clockwise
    int priority = 100;
    /// Fills a frame in, on the camera's thread. Empty: the picture below.
    std::function<void(TestCameraFrame&)> draw = {};
    /// What it sees, stretched to the frame by its nearest pixels; empty: grey.
    CGImage picture = {};
};

/// A camera in the process that PipeWire serves to everybody. It lives in a PipeWireSession, unplugged by being
/// destroyed; the picture that it sees may be changed from any thread.
class TestCameraNode {
public:
    explicit TestCameraNode(TestCameraSettings settings);
    ~TestCameraNode();
    TestCameraNode(const TestCameraNode&) = delete;
    TestCameraNode& operator=(const TestCameraNode&) = delete;

    void setPicture(const CGImage& picture);
    /// How many frames it has given.
    std::uint64_t frames() const;
    /// In which size it runs; empty: it doesn't.
    IntSize size() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace lamina::test
