#pragma once

#include "gpu/core/GLProgram.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace lamina {

/// The programs of a GL context by the texts of their shaders, so that filters of the same shaders share one and a
/// filter that is made again compiles nothing.
///
/// Programs that nobody else holds are idle. They are kept up to a bound; beyond it the least recently asked for go
/// first. Those in use are never dropped: a filter that is made beside them always finds them.
///
/// All of it on the context's queue, with the context current.
class GLProgramCache {
public:
    /// More idle programs than this are not kept. A program takes some tens of kilobytes of the driver's memory.
    static constexpr std::size_t kIdleLimit = 64;

    /// The program of these two texts, compiled when it is not there, perhaps not yet linked: test `initialized`.
    std::shared_ptr<GLProgram> programForShaders(const std::string& vertexShader, const std::string& fragmentShader);
    /// Drops the idle programs.
    void purgeIdlePrograms() { dropIdleBeyond(0); }
    /// Programs that are kept, in use and idle.
    std::size_t count() const { return m_programs.size(); }

private:
    struct Entry {
        std::shared_ptr<GLProgram> program;
        std::uint64_t asked = 0; ///< running number of the last time
    };
    void dropIdleBeyond(std::size_t limit);

    std::map<std::pair<std::string, std::string>, Entry> m_programs;
    std::uint64_t m_questions = 0;
};

} // namespace lamina
