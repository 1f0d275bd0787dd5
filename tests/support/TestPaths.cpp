#include "TestPaths.h"

namespace lamina::test {

namespace {

std::string inside(const char* folder, const std::string& name)
{
    return name.empty() ? folder : std::string(folder) + "/" + name;
}

} // namespace

std::string testData(const std::string& name)
{
    return inside(LAMINA_TEST_DATA, name);
}

std::string samples(const std::string& name)
{
    return inside(LAMINA_SAMPLES, name);
}

std::string golden(const std::string& name)
{
    return inside(LAMINA_GOLDEN, name);
}

} // namespace lamina::test
