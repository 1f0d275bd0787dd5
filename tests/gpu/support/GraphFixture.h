#pragma once

#include "CommandRunner.h"
#include "CountingConsumer.h"
#include "FrameSource.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace lamina::test {

/// Needs a context, and fails where there is none: a test without one would say nothing. Starts with an empty pool and
/// no GL error, and asks that none is left.
class GraphFixture : public testing::Test {
protected:
    void SetUp() override
    {
        const Outcome available = GPUImageContext::availability();
        ASSERT_TRUE(available.ok()) << available.error().subject << ": " << available.error().cause;
        emptyPool();
    }

    void TearDown() override
    {
        onQueue([] { EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}); });
    }

    static void onQueue(const std::function<void()>& body) { runSynchronouslyOnVideoProcessingQueue(body); }

    std::shared_ptr<FrameSource> m_source = std::make_shared<FrameSource>();
};

/// Multiplies all channels by its uniform `factor`.
inline std::shared_ptr<GPUImageFilter> multiplying(float factor)
{
    auto filter = std::make_shared<GPUImageFilter>(R"(
        varying highp vec2 textureCoordinate; uniform sampler2D inputImageTexture; uniform highp float factor;
        void main() { gl_FragColor = texture2D(inputImageTexture, textureCoordinate) * factor; })");
    filter->setFloat(factor, "factor");
    return filter;
}

/// A consumer at the end of `output`.
inline std::shared_ptr<CountingConsumer> consumerOf(GPUImageOutput& output)
{
    auto consumer = std::make_shared<CountingConsumer>();
    output.addTarget(consumer);
    return consumer;
}

} // namespace lamina::test
