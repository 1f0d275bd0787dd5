#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "gpu/core/GPUImageOutput.h"
#include "platform/base/Result.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App; // whose headers cost each file that includes them some work at every start
}

namespace lamina {

template <class Step>
class StepOptions;

/// The filters that every frame of a movie goes through, as a command line names them: one after the other, each with
/// settings of its own, or as a file tells them; perhaps none.
class MovieChain {
public:
    MovieChain();
    ~MovieChain();
    MovieChain(const MovieChain&) = delete;
    MovieChain& operator=(const MovieChain&) = delete;

    /// Adds `--filter`, `--set` and `--pipeline`. The chain outlives the parser.
    void addTo(CLI::App& options);
    /// Understands what was typed, before any file is opened. What fails is wrong usage.
    Outcome check(const CLI::App& options);
    /// Reads the chain's file, and looks into those that settings name. What fails is an input.
    Outcome read();

    /// Of the filters, in order; known once it was read.
    std::vector<std::string> names() const;
    bool isEmpty() const { return names().empty(); }
    /// New filters behind `input`. The error names the filter that can't be made, or that can't draw.
    Result<std::unique_ptr<GPUImageFilterPipeline>> connect(const std::shared_ptr<GPUImageOutput>& input) const;

private:
    /// `--filter NAME` or `--set PROPERTY=VALUE`, as it was typed.
    struct Step {
        bool isFilter;
        std::string text;
    };
    Outcome addFilter(const std::string& name, const std::vector<std::string>& settings);
    Result<std::unique_ptr<GPUImageFilterPipeline>> makePipeline(std::shared_ptr<GPUImageOutput> input) const;

    const std::unique_ptr<StepOptions<Step>> m_options;
    std::string m_file;
    std::vector<std::pair<const FilterDescription*, FilterSettings>> m_filters;
    std::optional<PipelineConfiguration> m_configuration; ///< by `read`, where a file is named
};

} // namespace lamina
