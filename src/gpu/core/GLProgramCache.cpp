#include "gpu/core/GLProgramCache.h"

#include <algorithm>
#include <vector>

namespace lamina {

std::shared_ptr<GLProgram> GLProgramCache::programForShaders(const std::string& vertexShader,
                                                             const std::string& fragmentShader)
{
    const auto [entry, isNew] = m_programs.try_emplace({vertexShader, fragmentShader});
    entry->second.asked = ++m_questions;
    if (!isNew)
        return entry->second.program;
    std::shared_ptr<GLProgram> program = std::make_shared<GLProgram>(vertexShader, fragmentShader);
    entry->second.program = program; // held here too, so that it is not idle itself
    dropIdleBeyond(kIdleLimit);
    return program;
}

void GLProgramCache::dropIdleBeyond(std::size_t limit)
{
    using Place = decltype(m_programs)::iterator;
    std::vector<Place> idle;
    for (auto place = m_programs.begin(); place != m_programs.end(); ++place) {
        if (place->second.program.use_count() == 1)
            idle.push_back(place);
    }
    if (idle.size() <= limit)
        return;
    std::ranges::sort(idle, {}, [](const Place& place) { return place->second.asked; });
    idle.resize(idle.size() - limit);
    for (const Place& place : idle)
        m_programs.erase(place);
}

} // namespace lamina
