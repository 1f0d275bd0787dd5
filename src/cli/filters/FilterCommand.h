#pragma once

#include "cli/batch/BatchCommand.h"
#include "cli/common/ExitCode.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// `lamina filter`: pictures through one GPU filter, or one through a chain of them. Everything is checked and read
/// before a GL context is made.
class FilterCommand : public BatchCommand {
public:
    explicit FilterCommand(CLI::App& application);

private:
    std::vector<std::string> inputs() const override { return m_inputs; }
    Outcome check() override;
    std::size_t memoryLimit() const override;
    /// The chain's file too.
    Result<std::vector<UIImage>> read() override;
    Result<UIImage> make(std::vector<UIImage> pictures) override;
    /// The report too, after the picture, if there is one to write.
    ExitCode deliver(const UIImage& picture) override;
    Outcome prepare(std::vector<UIImage> shared) override;
    std::size_t memoryFor(IntSize sides) const override;
    /// Drawing is for one at a time; reading and writing go on beside it.
    Result<Made> makeOf(const PhotoSource& source, std::optional<IntSize> sides, const DecodeOptions& options) override;

    bool isPipeline() const { return !m_pipeline.empty(); }
    Outcome checkFilter();
    /// A generator draws at a size where it gets no picture.
    Outcome checkGenerator();
    Outcome checkReport() const;
    /// `whose`: what takes so many inputs.
    Outcome checkCount(std::size_t inputs, const std::string& whose) const;
    Result<UIImage> draw(std::vector<UIImage> pictures, FilterReport* report) const;
    void tellReductions(const std::vector<UIImage>& pictures) const;

    std::string m_name;
    std::string m_pipeline;
    std::vector<std::string> m_inputs;
    std::vector<std::string> m_settings;
    std::string m_sizeText;
    bool m_reports = false;

    const FilterDescription* m_filter = nullptr; ///< by `check`, where there is no chain
    FilterSettings m_filterSettings;
    IntSize m_size;                ///< by `check`, for a generator without a picture
    PipelineConfiguration m_chain; ///< by `read`
    FilterReport m_report;         ///< by `make`
    std::vector<UIImage> m_shared; ///< by `prepare`
    std::mutex m_drawing;
};

} // namespace lamina
