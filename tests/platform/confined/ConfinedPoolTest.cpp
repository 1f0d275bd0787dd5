// Programs that try to break out, to take what they were not given, and to outlive who asks them.

#include "CommandRunner.h"
#include "Trials.h"

#include "platform/confined/ConfinedPool.h"
#include "platform/files/FileReading.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kBoundsMemory = false;
#else
constexpr bool kBoundsMemory = true;
#endif

class ConfinedPrograms : public testing::Test {
protected:
    ConfinedPrograms()
        : m_before(children())
    {
        ::setenv("LAMINA_MODULES", LAMINA_TRIALS, 1);
    }

    /// The trial's result, or the end in brackets.
    struct Got {
        ConfinedEnd end = ConfinedEnd::Answered;
        int result = 0;
        bool operator==(const Got&) const = default;
    };

    Got tryOut(std::string_view trial, ConfinedCall call = {}, int descriptor = -1, std::uint64_t amount = 0)
    {
        TrialRequest request{.amount = amount, .parent = ::getpid()};
        std::ranges::copy(trial, request.name.begin());
        TrialAnswer answer;
        call.request = std::as_bytes(std::span(&request, 1));
        call.answer = std::as_writable_bytes(std::span(&answer, 1));
        if (descriptor >= 0)
            call.descriptors = {&descriptor, 1};
        call.memory = call.memory > 0 ? call.memory : std::size_t{64} << 20;
        call.processorSeconds = call.processorSeconds > 0 ? call.processorSeconds : 10;
        call.seconds = call.seconds > 0 ? call.seconds : 60;
        const ConfinedEnd end = m_pool.call(call);
        return {end, answer.result};
    }

    /// This process's children, dead ones that nobody has waited for among them.
    static std::set<pid_t> children()
    {
        std::set<pid_t> found;
        for (const auto& task : fs::directory_iterator("/proc/self/task")) {
            std::ifstream file(task.path() / "children");
            for (pid_t child = 0; file >> child;)
                found.insert(child);
        }
        return found;
    }
    std::set<pid_t> ownChildren() const
    {
        std::set<pid_t> now = children();
        std::erase_if(now, [this](pid_t child) { return m_before.contains(child); });
        return now;
    }

    const std::set<pid_t> m_before;
    ConfinedPool m_pool{"trial_program"};
};

TEST_F(ConfinedPrograms, AreKeptFromAllButComputing)
{
    struct {
        const char* trial;
        Got wanted;
    } const cases[] = {
        {"nothing", {}},
        {"make a thread", {}},
        {"open a file", {ConfinedEnd::Answered, EACCES}},
        {"stat a file", {ConfinedEnd::Answered, ENOSYS}},
        {"signal the parent", {ConfinedEnd::Answered, ENOSYS}},
        {"map code", {ConfinedEnd::Answered, EPERM}},
        {"map what is shared", {ConfinedEnd::Answered, EPERM}},
        {"map what grows", {ConfinedEnd::Answered, EPERM}},
        {"raise the bound", {ConfinedEnd::Answered, EPERM}},
        {"live for ever", {ConfinedEnd::Answered, EPERM}},
        {"make many threads", {ConfinedEnd::Stopped}},
        {"connect by net", {ConfinedEnd::Stopped}},
        {"connect by file", {ConfinedEnd::Stopped}},
        {"fork", {ConfinedEnd::Stopped}},
        {"vfork", {ConfinedEnd::Stopped}},
        {"exec", {ConfinedEnd::Stopped}},
        {"read the parent's memory", {ConfinedEnd::Stopped}},
        {"die", {ConfinedEnd::Stopped}},
        {"answer in one byte", {ConfinedEnd::Stopped}},
    };
    for (const auto& [trial, wanted] : cases) {
        const Got got = tryOut(trial);
        EXPECT_EQ(got.end, wanted.end) << trial;
        EXPECT_EQ(got.result, wanted.result) << trial;
        EXPECT_EQ(tryOut("nothing"), Got()) << "the next one is as good as any";
    }
}

TEST_F(ConfinedPrograms, CanNotChangeTheirInput)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("input");
    std::ofstream(path) << "content";
    const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    EXPECT_NE(tryOut("write over the input", {}, file.get()), Got());
    std::string kept;
    std::ifstream(path) >> kept;
    EXPECT_EQ(kept, "content");
}

TEST_F(ConfinedPrograms, TakeNoMoreThanTheyWereGiven)
{
    constexpr std::uint64_t kGiven = std::uint64_t{100} << 20;
    const auto taking = [&](std::uint64_t amount) { return tryOut("allocate", {.memory = kGiven}, -1, amount).end; };
    if (kBoundsMemory) {
        EXPECT_EQ(taking(kGiven + (16 << 20)), ConfinedEnd::OutOfMemory);
        EXPECT_EQ(tryOut("map far more"), (Got{ConfinedEnd::Answered, ENOMEM}));
    }
    for (int i = 0; i < 3; ++i) // what it never gives back is not taken from the next one's
        EXPECT_EQ(taking(kGiven - (16 << 20)), ConfinedEnd::Answered);

    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(tryOut("spin", {.processorSeconds = 0.05}).end, ConfinedEnd::TookTooLong);
    EXPECT_EQ(tryOut("sleep", {.seconds = 0.05}).end, ConfinedEnd::TookTooLong);
    EXPECT_EQ(tryOut("sleep", {.asleepSeconds = 0.05}).end, ConfinedEnd::TookTooLong);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
}

TEST_F(ConfinedPrograms, AreLeftAtOnceAndWaitForNobody)
{
    const std::size_t most = std::thread::hardware_concurrency() + 1;
    std::atomic<bool> cancelled = false;
    std::vector<std::thread> stuck;
    std::atomic<std::size_t> ended = 0;
    for (std::size_t i = 0; i < most + 2; ++i) // more than there are programs: some wait for one
        stuck.emplace_back([&, i] {
            const Got got = tryOut(i % 2 ? "spin" : "sleep", {.cancelled = &cancelled});
            ended += got.end == ConfinedEnd::Cancelled ? 1 : 0;
        });
    std::this_thread::sleep_for(200ms);
    const auto start = std::chrono::steady_clock::now();
    cancelled = true;
    for (std::thread& thread : stuck)
        thread.join();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
    EXPECT_EQ(ended, most + 2);

    // One that hangs leaves the others alone.
    cancelled = false;
    std::thread hanging([&] { tryOut("sleep", {.cancelled = &cancelled}); });
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(tryOut("nothing"), Got());
    cancelled = true;
    hanging.join();
}

TEST_F(ConfinedPrograms, LeaveNothingBehindAndAreStartedAnew)
{
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(tryOut("die").end, ConfinedEnd::Stopped);
        EXPECT_EQ(tryOut("nothing"), Got());
    }
    const std::set<pid_t> kept = ownChildren();
    ASSERT_EQ(kept.size(), 1u);
    ::kill(*kept.begin(), SIGKILL); // by somebody else
    EXPECT_EQ(tryOut("nothing"), Got());
}

TEST_F(ConfinedPrograms, EndWithWhoAsksThemInTheMidstOfWork)
{
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const pid_t asking = ::fork();
    if (asking == 0) {
        ::signal(SIGCHLD, SIG_IGN); // nor does it need to hear of its children
        std::thread([&] { tryOut("spin", {.processorSeconds = 1000, .seconds = 1000}); }).detach();
        std::set<pid_t> programs;
        while (programs.empty())
            programs = children();
        std::this_thread::sleep_for(300ms);
        const pid_t program = *programs.begin();
        [[maybe_unused]] const ssize_t told = ::write(pipe[1], &program, sizeof(program));
        ::_exit(0);
    }
    pid_t program = 0;
    ASSERT_EQ(::read(pipe[0], &program, sizeof(program)), static_cast<ssize_t>(sizeof(program)));
    ::waitpid(asking, nullptr, 0);
    const auto start = std::chrono::steady_clock::now();
    while (::kill(program, 0) == 0 && std::chrono::steady_clock::now() - start < 10s)
        std::this_thread::sleep_for(10ms);
    EXPECT_NE(::kill(program, 0), 0);
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(ConfinedPrograms, WorkForHostsOfAllKinds)
{
    struct sigaction before {};
    struct sigaction ignoring {};
    ignoring.sa_handler = SIG_IGN;
    ::sigaction(SIGCHLD, &ignoring, &before);
    EXPECT_EQ(tryOut("die").end, ConfinedEnd::Stopped);
    EXPECT_EQ(tryOut("nothing"), Got());
    ::sigaction(SIGCHLD, &before, nullptr);
    // Somebody waits for any child there is.
    EXPECT_EQ(tryOut("nothing"), Got());
    std::thread other([] { ::waitpid(-1, nullptr, 0); });
    EXPECT_EQ(tryOut("die").end, ConfinedEnd::Stopped);
    other.join();
    EXPECT_EQ(tryOut("nothing"), Got());
}

TEST_F(ConfinedPrograms, SayWhyTheyCanNotBegin)
{
    const TemporaryFolder folder;
    ::setenv("LAMINA_MODULES", folder.path("").c_str(), 1);
    EXPECT_EQ(tryOut("nothing").end, ConfinedEnd::NotInstalled);
    for (const char* text : {"", "#!/bin/sh\nexit 0\n"}) { // no program, and one that says nothing
        std::ofstream(folder.path("trial_program")) << text;
        fs::permissions(folder.path("trial_program"), fs::perms::owner_all);
        EXPECT_EQ(tryOut("nothing").end, ConfinedEnd::NotStarted) << text;
    }
}

} // namespace
} // namespace lamina::test
