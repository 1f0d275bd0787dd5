#pragma once

#include "CommandRunner.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace lamina::test {

/// What tests keep in the user's folder for caches lies in one of their own. Set once, before any thread reads it; to
/// be given to `testing::AddGlobalTestEnvironment`.
class OwnCache : public testing::Environment {
public:
    void SetUp() override { ::setenv("XDG_CACHE_HOME", m_folder.path().c_str(), 1); }

private:
    const TemporaryFolder m_folder;
};

} // namespace lamina::test
