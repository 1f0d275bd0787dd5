#pragma once

#include "gpu/endpoints/GPUImageMovie.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

/// Writes down what a movie tells of its end.
class MovieEnding : public GPUImageMovieDelegate {
public:
    static std::shared_ptr<MovieEnding> of(GPUImageMovie& movie)
    {
        auto ending = std::make_shared<MovieEnding>();
        movie.setDelegate(ending);
        return ending;
    }
    std::vector<std::string> calls() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_calls;
    }

    void didCompletePlayingMovie() override { add("completed"); }
    void didFailPlayingMovie(const Error& error) override { add("failed: " + error.message()); }

private:
    void add(std::string call)
    {
        const std::scoped_lock lock(m_mutex);
        m_calls.push_back(std::move(call));
    }
    mutable std::mutex m_mutex;
    std::vector<std::string> m_calls;
};

} // namespace lamina::test
