// Decodes many damaged pictures of a format, or clips ("clip"), as any program reads them, and keeps those that end
// badly.
//
//   damage_campaign FORMAT COUNT FOLDER [FIRST]
//
// The files are numbered from FIRST (0) on and made of the corpus and the fixtures; a number gives the same file again,
// so that a run can be carried on. Each hundred is decoded in a process of its own, which may crash or hang. FOLDER
// takes the findings, named by number and fault, and what was written to standard error.

#include "ArrivalCheck.h"
#include "ClipCheck.h"
#include "DamagedFiles.h"
#include "DecodeCheck.h"
#include "ProcessUsage.h"

#include "platform/image/codecs/PictureDecoding.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

#if defined(__SANITIZE_ADDRESS__)
constexpr double kMostSeconds = 20;
constexpr long kMostKilobytes = 1'600'000;
constexpr long kMostOfClip = 2'500'000;
#else
constexpr double kMostSeconds = 2;
constexpr long kMostKilobytes = 400'000;
constexpr long kMostOfClip = 640'000; ///< a movie's index, twice
#endif
constexpr double kMostArrivals = 3; ///< as long as decoding may take, for all pictures that are asked for on the way
constexpr std::chrono::seconds kHangs{60};
constexpr std::uint64_t kBatch = 100;
constexpr std::size_t kLargestBase = 60'000;

struct Worst {
    double value = 0;
    std::uint64_t number = 0;

    void include(double other, std::uint64_t at)
    {
        if (other > value)
            *this = {other, at};
    }
};

/// What the processes share.
struct Shared {
    volatile std::uint64_t current; ///< the file that is being decoded
    std::uint64_t whole;
    std::uint64_t refusals;
    std::uint64_t findings;
    Worst seconds;
    Worst kilobytes;
    Worst decoderKilobytes; ///< behind its wall
};

std::vector<Bytes> basesOf(const std::string& format)
{
    std::vector<fs::path> paths;
    for (const auto& entry : fs::directory_iterator(std::string(LAMINA_CORPUS) + "/" + format))
        paths.push_back(entry.path());
    for (const auto& entry : fs::directory_iterator(LAMINA_PICTURES)) {
        const std::string name = entry.path().filename();
        if (name.starts_with(format + "-") || (format == "heic" && name.starts_with("avif-")))
            paths.push_back(entry.path());
    }
    std::ranges::sort(paths);
    std::vector<Bytes> files;
    for (const fs::path& path : paths) {
        std::ifstream file(path, std::ios::binary);
        Bytes bytes{std::istreambuf_iterator<char>(file), {}};
        if (bytes.empty() || bytes.size() > kLargestBase)
            continue;
        // Most damage does more to a sound file.
        const bool isSound = path.parent_path() == LAMINA_PICTURES || path.filename().string().starts_with("whole-");
        files.insert(files.end(), isSound ? 6 : 1, bytes);
    }
    return files;
}

/// The decoders that this process has started and that still run.
std::vector<pid_t> decoders()
{
    std::ifstream list("/proc/thread-self/children");
    return {std::istream_iterator<pid_t>(list), {}};
}

double processorSeconds(clockid_t clock)
{
    timespec time{};
    return ::clock_gettime(clock, &time) == 0
               ? static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9
               : 0;
}

/// Of this process and of its decoders, those that are gone too.
double processorSeconds()
{
    rusage gone{};
    ::getrusage(RUSAGE_CHILDREN, &gone);
    double seconds = processorSeconds(CLOCK_PROCESS_CPUTIME_ID) + usageOf(gone).processorSeconds;
    for (const pid_t decoder : decoders()) {
        clockid_t clock{};
        if (::clock_getcpuclockid(decoder, &clock) == 0)
            seconds += processorSeconds(clock);
    }
    return seconds;
}

void forgetPeak(const std::string& process)
{
    std::ofstream("/proc/" + process + "/clear_refs") << 5;
}

long peakKilobytes(const std::string& process)
{
    constexpr std::string_view kPeak = "VmHWM:";
    std::ifstream status("/proc/" + process + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(kPeak))
            return std::atol(line.c_str() + kPeak.size());
    }
    return 0;
}

/// The most that one decoder has had, of those that are gone too.
long peakOfDecoders()
{
    rusage gone{};
    ::getrusage(RUSAGE_CHILDREN, &gone);
    long peak = usageOf(gone).peakKilobytes;
    for (const pid_t decoder : decoders())
        peak = std::max(peak, peakKilobytes(std::to_string(decoder)));
    return peak;
}

/// What one file costs from here on.
class Cost {
public:
    Cost()
    {
        forgetPeak("self");
        for (const pid_t decoder : decoders())
            forgetPeak(std::to_string(decoder));
        m_peakBefore = peakOfDecoders(); // of those whose peak could not be forgotten
        m_secondsBefore = processorSeconds();
    }

    double seconds() const { return processorSeconds() - m_secondsBefore; }
    long ownKilobytes() const { return peakKilobytes("self"); }
    /// 0 where none needed more than before.
    long decoderKilobytes() const
    {
        const long peak = peakOfDecoders();
        return peak > m_peakBefore ? peak : 0;
    }

private:
    long m_peakBefore = 0;
    double m_secondsBefore = 0;
};

/// How a decoder behind its wall failed by itself: it died or hung, or there is none. One that was ended because of
/// its work is judged by that, as any is.
std::string faultOfDecoder(const Result<UIImage>& decoded, double seconds)
{
    constexpr double kLeastWork = 1; // that a decoder is ended for
    const std::string cause = decoded ? std::string() : decoded.error().cause;
    const bool isItsOwn = cause.find("decoder") != std::string::npos &&
                          (cause.find("took too long") == std::string::npos || seconds < kLeastWork);
    return isItsOwn ? cause : std::string();
}

class Campaign {
public:
    Campaign(const std::string& format, std::string folder)
        : m_isClip(format == "clip")
        , m_damage(basesOf(format))
        , m_folder(std::move(folder))
        , m_shared(new (::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
                       Shared{})
    {
        fs::create_directories(m_folder);
    }

    /// The number of findings.
    std::uint64_t run(std::uint64_t first, std::uint64_t count)
    {
        std::uint64_t next = first;
        while (next < first + count) {
            const std::uint64_t end = std::min(next + kBatch, first + count);
            m_shared->current = next;
            const pid_t child = ::fork();
            if (child == 0)
                decodeAll(next, end);
            const std::string fault = outcomeOf(child);
            if (!fault.empty())
                keep(m_shared->current, fault);
            next = fault.empty() ? end : m_shared->current + 1;
        }
        return m_shared->findings;
    }

    void tell(std::uint64_t count) const
    {
        const auto number = [](std::uint64_t value) { return static_cast<unsigned long long>(value); };
        std::printf("%llu files: %llu whole, %llu refused; %llu findings\n", number(count), number(m_shared->whole),
                    number(m_shared->refusals), number(m_shared->findings));
        std::printf("slowest: %.3f s (number %llu); most memory: %.0f MB (number %llu), "
                    "of a decoder behind its wall %.0f MB (number %llu)\n",
                    m_shared->seconds.value, number(m_shared->seconds.number), m_shared->kilobytes.value / 1024,
                    number(m_shared->kilobytes.number), m_shared->decoderKilobytes.value / 1024,
                    number(m_shared->decoderKilobytes.number));
        std::printf("written to standard error: %llu bytes\n", number(fs::file_size(m_folder / "stderr")));
    }

private:
    [[noreturn]] void decodeAll(std::uint64_t first, std::uint64_t end)
    {
        const int errors = ::open((m_folder / "stderr").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        ::dup2(errors, STDERR_FILENO);
        for (std::uint64_t number = first; number < end; ++number) {
            m_shared->current = number;
            if (const std::string fault = decode(number); !fault.empty())
                keep(number, fault);
        }
        std::_Exit(0);
    }

    std::string decode(std::uint64_t number)
    {
        const Bytes bytes = m_damage.file(number);
        return m_isClip ? readClip(number, bytes) : decodePicture(number, bytes);
    }

    std::string readClip(std::uint64_t number, const Bytes& bytes)
    {
        const Cost cost;
        const ClipReport report = ClipCheck::read(bytes);
        const std::string excess = excessOf(cost, cost.seconds(), number, report.cause.empty());
        return report.fault.empty() ? excess : report.fault;
    }

    std::string decodePicture(std::uint64_t number, const Bytes& bytes)
    {
        const DecodeOptions options{.shortSide = number % 3 == 0 ? 5 : 0};
        const Cost cost;
        const Result<UIImage> decoded = lamina::decodePicture(bytes, "damaged", options);
        const double seconds = cost.seconds();
        const std::string excess = excessOf(cost, seconds, number, decoded.ok());
        for (const std::string& fault :
             {faultOfDecoder(decoded, seconds), excess, faultOf(decoded, options.memoryLimit)})
            if (!fault.empty())
                return fault;
        return options.shortSide == 0 ? faultOfFacts(bytes, decoded) : faultOfArriving(bytes);
    }

    static std::string faultOfArriving(const Bytes& bytes)
    {
        const Result<UIImage> whole = lamina::decodePicture(bytes, "damaged");
        const Cost cost;
        const std::string fault = faultOfArrival(bytes, whole, DecodeOptions().memoryLimit);
        return fault.empty() && cost.seconds() > kMostArrivals * kMostSeconds ? "slow arrival" : fault;
    }

    /// Counts a file, and says what it took too much of.
    std::string excessOf(const Cost& cost, double seconds, std::uint64_t number, bool isRead)
    {
        const long kilobytes = cost.ownKilobytes();
        const long decoderKilobytes = cost.decoderKilobytes();
        ++(isRead ? m_shared->whole : m_shared->refusals);
        m_shared->seconds.include(seconds, number);
        m_shared->kilobytes.include(static_cast<double>(kilobytes), number);
        m_shared->decoderKilobytes.include(static_cast<double>(decoderKilobytes), number);
        if (seconds > kMostSeconds)
            return "slow";
        return std::max(kilobytes, decoderKilobytes) > (m_isClip ? kMostOfClip : kMostKilobytes) ? "memory" : "";
    }

    /// How a process ended; empty when it came through.
    static std::string outcomeOf(pid_t child, const volatile std::uint64_t& current)
    {
        std::uint64_t seen = current;
        auto since = Clock::now();
        int status = 0;
        while (::waitpid(child, &status, WNOHANG) == 0) {
            if (current != seen) {
                seen = current;
                since = Clock::now();
            } else if (Clock::now() - since > kHangs) {
                ::kill(child, SIGKILL);
                ::waitpid(child, &status, 0);
                return "hangs";
            }
            ::usleep(2000);
        }
        if (WIFSIGNALED(status))
            return "signal " + std::to_string(WTERMSIG(status));
        return WEXITSTATUS(status) == 0 ? "" : "exit " + std::to_string(WEXITSTATUS(status));
    }
    std::string outcomeOf(pid_t child) const { return outcomeOf(child, m_shared->current); }

    void keep(std::uint64_t number, std::string fault)
    {
        ++m_shared->findings;
        std::ranges::replace(fault, ' ', '-');
        const Bytes bytes = m_damage.file(number);
        std::ofstream(m_folder / (std::to_string(number) + "-" + fault), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    const bool m_isClip;
    DamagedFiles m_damage;
    fs::path m_folder;
    Shared* m_shared;
};

} // namespace
} // namespace lamina::test

int main(int count, char** arguments)
{
    if (count < 4) {
        std::fprintf(stderr, "damage_campaign FORMAT COUNT FOLDER [FIRST]\n");
        return 2;
    }
    lamina::test::Campaign campaign(arguments[1], arguments[3]);
    const std::uint64_t files = std::strtoull(arguments[2], nullptr, 10);
    const std::uint64_t findings = campaign.run(count > 4 ? std::strtoull(arguments[4], nullptr, 10) : 0, files);
    campaign.tell(files);
    return findings == 0 ? 0 : 1;
}
