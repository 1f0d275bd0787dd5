#include "Surroundings.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace lamina::test {

GermanLocale::GermanLocale()
{
    const CommandResult made = runCommand(LOCALEDEF, {"-i", "de_DE", "-f", "UTF-8", m_folder.path("de_DE.UTF-8")});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
    ::setenv("LOCPATH", m_folder.path().c_str(), 1);
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    EXPECT_EQ(std::string(std::localeconv()->decimal_point), ",");
}

GermanLocale::~GermanLocale()
{
    std::setlocale(LC_ALL, "C");
    ::unsetenv("LOCPATH");
}

OneProcessor::OneProcessor()
{
    sched_getaffinity(0, sizeof m_before, &m_before);
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<unsigned>(sched_getcpu()), &one);
    sched_setaffinity(0, sizeof one, &one);
}

OneProcessor::~OneProcessor()
{
    sched_setaffinity(0, sizeof m_before, &m_before);
}

} // namespace lamina::test
