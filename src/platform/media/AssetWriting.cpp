#include "platform/media/AssetWriting_p.h"

#include "platform/base/Causes.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileSizeSignal.h"
#include "platform/media/FrameLayout_p.h"

#include <chrono>
#include <cmath>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kMostWaiting = 3;
/// Of sound in real time, which comes in pieces of some hundredths of a second while the thread is at a frame.
constexpr std::size_t kMostWaitingLiveSound = 200;
/// Of frames that can wait where they come from, as soon as they are more than one.
constexpr std::size_t kMostBytes = std::size_t{24} << 20;

/// An input may run ahead of another by so many seconds of the movie before it waits for it, and then waits so long:
/// the file comes out well mixed, and nobody waits for an input that has nothing to give.
constexpr double kMostAhead = 1;
constexpr std::chrono::milliseconds kPatience{250};
/// What a conversion waits for its first frame, however slow the machine: the frame tells how all are encoded.
constexpr std::chrono::seconds kPatienceForFirstFrame{60};

/// What a cancelled thread is waited for, so that it is over as a rule when the caller goes on.
constexpr std::chrono::milliseconds kWaitForThread{50};

/// When a block that appended nothing is called again.
constexpr double kPauseOfBlocks = 0.01;

} // namespace

AssetWriting::AssetWriting(std::string path, const char* container, const MediaModule& module,
                           std::unique_ptr<MovieWriting> movie)
    : m_path(std::move(path))
    , m_module(module)
    , m_movie(std::move(movie))
{
    m_settings.container = container;
    m_settings.cancelled = &m_cancelled;
}

Result<std::size_t> AssetWriting::addInput(AVTrackMediaType type,
                                           const std::function<Outcome(MovieWriting& movie)>& add)
{
    const std::lock_guard lock(m_mutex);
    if (m_status != AVAssetWriterStatus::Unknown)
        return Error{m_path, "the movie has begun already"};
    if (const Outcome added = add(*m_movie); !added)
        return Error{added.error().subject.empty() ? m_path : added.error().subject, added.error().cause};
    Input input;
    input.type = type;
    m_inputs.push_back(std::move(input));
    return m_inputs.size() - 1;
}

Outcome AssetWriting::makeFile()
{
    auto file = GrowingFile::make(m_path, isRecording() ? GrowingFile::Leftover::Kept : GrowingFile::Leftover::Swept);
    if (!file)
        return file.error();
    m_file = std::move(*file);
    m_settings.path = m_file->descriptorPath();
    std::vector<MovieWriting::TrackKind> kinds;
    for (const Input& input : m_inputs)
        kinds.push_back(input.kind);
    const Outcome begun = m_movie->begin(m_settings, kinds);
    if (!begun)
        return Error{m_path, begun.error().cause};
    try {
        std::thread([self = shared_from_this()] { self->run(); }).detach();
    } catch (const std::system_error&) {
        return Error{m_path, "there are too many threads"};
    }
    return success();
}

Outcome AssetWriting::start()
{
    Lock lock(m_mutex);
    if (m_status != AVAssetWriterStatus::Unknown)
        return Error{m_path, "the movie has begun already"};
    Outcome made = m_inputs.empty() ? Outcome(Error{m_path, "the movie has no tracks"}) : makeFile();
    m_runs = made.ok();
    m_status = made ? AVAssetWriterStatus::Writing : AVAssetWriterStatus::Failed;
    if (!made) {
        m_error = made.error();
        m_file.reset();
    }
    lock.unlock();
    askAll();
    return made;
}

void AssetWriting::startSession(const CMTime& time)
{
    const std::lock_guard lock(m_mutex);
    if (!m_start && time.isNumeric())
        m_start = time;
}

AVAssetWriterStatus AssetWriting::status() const
{
    const std::lock_guard lock(m_mutex);
    return m_status;
}

std::optional<Error> AssetWriting::error() const
{
    const std::lock_guard lock(m_mutex);
    return m_error;
}

/// Nobody waits for the inputs any more, and what they hold goes. Blocks run a last time to see a failure, of which
/// nothing else may tell those who append.
void AssetWriting::releaseInputs(Lock& lock)
{
    std::vector<CMSampleBuffer> pieces;
    std::vector<std::pair<DispatchQueue*, std::function<void()>>> blocks; // a block may be what keeps its queue
    for (Input& input : m_inputs) {
        pieces.insert(pieces.end(), input.waiting.begin(), input.waiting.end());
        input.waiting.clear();
        blocks.emplace_back(input.queue, std::exchange(input.block, nullptr));
    }
    const bool hasFailed = m_status == AVAssetWriterStatus::Failed;
    m_work.notify_all();
    m_ready.notify_all();
    lock.unlock(); // what is let go of may ask this object
    for (const auto& [queue, block] : blocks)
        if (hasFailed && block)
            queue->async(block);
}

void AssetWriting::cancel()
{
    Lock lock(m_mutex);
    if (m_status != AVAssetWriterStatus::Unknown && !isWriting())
        return;
    m_status = AVAssetWriterStatus::Cancelled;
    m_cancelled.store(true);
    const std::unique_ptr<GrowingFile> file = std::move(m_file);
    releaseInputs(lock);
    lock.lock();
    m_ended.wait_for(lock, kWaitForThread, [this] { return !m_runs; });
}

void AssetWriting::finish(std::function<void()> handler)
{
    Lock lock(m_mutex);
    if (isWriting() && m_runs && !m_finishes) {
        m_finishes = true;
        m_handler = std::move(handler);
        std::vector<std::function<void()>> blocks;
        for (Input& input : m_inputs) {
            input.isEnded = true;
            blocks.push_back(std::exchange(input.block, nullptr));
        }
        m_work.notify_all();
        m_ready.notify_all();
        lock.unlock();
        return;
    }
    lock.unlock();
    if (!handler)
        return;
    try {
        std::thread(handler).detach();
    } catch (const std::system_error&) {
        handler();
    }
}

MovieWriting::TrackKind AssetWriting::kind(std::size_t input) const
{
    const std::lock_guard lock(m_mutex);
    return m_inputs[input].kind;
}

void AssetWriting::setKind(std::size_t input, const MovieWriting::TrackKind& kind)
{
    const std::lock_guard lock(m_mutex);
    m_inputs[input].kind = kind;
}

bool AssetWriting::isReady(const Input& input) const
{
    const bool isLiveSound = input.kind.realTime && input.type == AVTrackMediaType::Audio;
    if (!isWriting() || input.isEnded || input.waiting.size() >= (isLiveSound ? kMostWaitingLiveSound : kMostWaiting))
        return false;
    return input.kind.realTime || input.waiting.empty() ||
           (input.waiting.size() + 1) * bytesOf(input.waiting.back().imageBuffer) <= kMostBytes;
}

bool AssetWriting::isReady(std::size_t input) const
{
    const std::lock_guard lock(m_mutex);
    return isReady(m_inputs[input]);
}

bool AssetWriting::waitUntilReady(std::size_t input, double seconds)
{
    constexpr double kLongest = 1e8; // beyond it clocks overflow
    Lock lock(m_mutex);
    const Input& waited = m_inputs[input];
    m_ready.wait_for(lock, std::chrono::duration<double>(std::fmin(std::fmax(0, seconds), kLongest)),
                     [&] { return !isWriting() || waited.isEnded || isReady(waited); });
    return isReady(waited);
}

bool AssetWriting::append(std::size_t input, const CMSampleBuffer& piece)
{
    const std::lock_guard lock(m_mutex);
    Input& taken = m_inputs[input];
    const bool isFitting = taken.type == AVTrackMediaType::Video ? piece.imageBuffer != nullptr : piece.isValid();
    if (!isReady(taken) || !isFitting || !piece.presentationTime.isNumeric())
        return false;
    if (!m_start)
        m_start = piece.presentationTime;
    taken.waiting.push_back(piece);
    taken.waiting.back().presentationTime = piece.presentationTime - *m_start;
    taken.isIdle = false;
    ++taken.appended;
    m_work.notify_all();
    return true;
}

void AssetWriting::end(std::size_t input)
{
    Lock lock(m_mutex);
    m_inputs[input].isEnded = true;
    const std::function<void()> block = std::exchange(m_inputs[input].block, nullptr);
    m_work.notify_all();
    m_ready.notify_all();
    lock.unlock();
}

bool AssetWriting::isEnded(std::size_t input) const
{
    const std::lock_guard lock(m_mutex);
    return m_inputs[input].isEnded;
}

void AssetWriting::request(std::size_t input, DispatchQueue& queue, std::function<void()> block)
{
    {
        const std::lock_guard lock(m_mutex);
        m_inputs[input].queue = &queue;
        m_inputs[input].block.swap(block);
    }
    ask(input);
}

/// Sends the block on its way where the input is ready for what it gives.
void AssetWriting::ask(std::size_t input)
{
    DispatchQueue* queue = nullptr;
    std::function<void()> block; // may be what keeps the queue
    {
        const std::lock_guard lock(m_mutex);
        Input& asked = m_inputs[input];
        if (!asked.block || asked.isAsked || !isReady(asked))
            return;
        asked.isAsked = true;
        queue = asked.queue;
        block = asked.block;
    }
    queue->async([self = shared_from_this(), input] { self->runBlock(input); });
}

void AssetWriting::askAll()
{
    for (std::size_t i = 0; i < m_inputs.size(); ++i)
        ask(i);
}

void AssetWriting::runBlock(std::size_t input)
{
    std::function<void()> block;
    std::uint64_t before = 0;
    {
        const std::lock_guard lock(m_mutex);
        if (isReady(m_inputs[input]))
            block = m_inputs[input].block;
        before = m_inputs[input].appended;
    }
    if (block)
        block();
    block = nullptr; // not under the lock
    DispatchQueue* again = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        Input& asked = m_inputs[input];
        const bool waits = asked.block && isReady(asked) && asked.appended == before;
        asked.isAsked = waits;
        again = waits ? asked.queue : nullptr;
        block = waits ? asked.block : nullptr;
    }
    if (again)
        again->after(kPauseOfBlocks, [self = shared_from_this(), input] { self->runBlock(input); });
    else
        ask(input);
}

void AssetWriting::run()
{
    const FileSizeSignalBlocker blocker;
    conclude(writeAll());
    std::function<void()> handler;
    {
        const std::lock_guard lock(m_mutex);
        m_runs = false;
        handler = std::exchange(m_handler, nullptr);
        m_ended.notify_all();
    }
    if (handler)
        handler();
}

Outcome AssetWriting::writeAll()
{
    for (;;) {
        Lock lock(m_mutex);
        std::optional<Step> step = nextStep(lock);
        lock.unlock();
        if (!step)
            return Error{m_path, cause::kCancelled};
        if (!step->input)
            return finishMovie();
        if (step->piece)
            ask(*step->input);
        const Outcome done =
            step->piece ? m_movie->append(*step->input, *step->piece) : m_movie->endTrack(*step->input);
        if (!done)
            return done;
    }
}

/// Waits for something to do; nothing when it is cancelled.
std::optional<AssetWriting::Step> AssetWriting::nextStep(Lock& lock)
{
    for (;;) {
        if (!isWriting())
            return std::nullopt;
        for (std::size_t i = 0; i < m_inputs.size(); ++i)
            if (m_inputs[i].isEnded && !m_inputs[i].isDrained && m_inputs[i].waiting.empty()) {
                m_inputs[i].isDrained = true;
                return Step{i, {}};
            }
        if (const std::optional<std::size_t> first = earliest()) {
            Input* lagging = laggingBehind(*first);
            if (!lagging)
                return take(*first);
            const bool isFirstFrame = lagging->type == AVTrackMediaType::Video && lagging->appended == 0;
            if (m_work.wait_for(lock, isFirstFrame && !isRecording() ? kPatienceForFirstFrame : kPatience) ==
                    std::cv_status::timeout &&
                lagging->waiting.empty())
                lagging->isIdle = true;
            continue;
        }
        if (m_finishes)
            return Step{};
        m_work.wait(lock);
    }
}

/// Of the inputs with a piece that waits the one whose piece is first.
std::optional<std::size_t> AssetWriting::earliest() const
{
    std::optional<std::size_t> first;
    for (std::size_t i = 0; i < m_inputs.size(); ++i)
        if (const auto& waiting = m_inputs[i].waiting; !waiting.empty())
            if (!first || waiting.front().presentationTime < m_inputs[*first].waiting.front().presentationTime)
                first = i;
    return first;
}

/// An input for which the first piece of another should wait; null when there is none.
AssetWriting::Input* AssetWriting::laggingBehind(std::size_t first)
{
    const double time = m_inputs[first].waiting.front().presentationTime.seconds();
    for (Input& input : m_inputs)
        if (input.waiting.empty() && !input.isEnded && !input.isIdle && !input.kind.realTime &&
            time > input.reached + kMostAhead)
            return &input;
    return nullptr;
}

AssetWriting::Step AssetWriting::take(std::size_t input)
{
    Input& taken = m_inputs[input];
    Step step{input, std::move(taken.waiting.front())};
    taken.waiting.pop_front();
    taken.reached = step.piece->presentationTime.seconds();
    m_ready.notify_all();
    return step;
}

/// The last steps: afterwards the movie stands under its name.
Outcome AssetWriting::finishMovie()
{
    if (Outcome finished = m_movie->finish(); !finished)
        return finished;
    const bool isToRewrite = isRecording() && std::string_view(m_settings.container) != "matroska";
    if (isToRewrite)
        if (Outcome rewritten = rewrite(); rewritten || m_cancelled.load())
            return rewritten;
    Lock lock(m_mutex); // a recording that can't be rewritten, the disk being full, plays as it is
    std::unique_ptr<GrowingFile> file = std::move(m_file);
    lock.unlock();
    Outcome taken = file ? takeName(*file) : Outcome(Error{m_path, cause::kCancelled});
    lock.lock();
    if (!taken && isWriting())
        m_file = std::move(file);
    return taken;
}

Outcome AssetWriting::rewrite()
{
    const Result<std::unique_ptr<GrowingFile>> plain = GrowingFile::make(m_path);
    if (!plain)
        return plain.error();
    FilmSettings settings = m_settings;
    settings.path = (*plain)->descriptorPath();
    settings.fragmentSeconds = 0;
    const Outcome written = m_module.rewriteMovie(m_settings.path, settings);
    return written ? takeName(**plain) : written;
}

/// A writer that was cancelled meanwhile doesn't.
Outcome AssetWriting::takeName(GrowingFile& file)
{
    if (Outcome finished = file.finish(); !finished)
        return finished;
    const std::lock_guard lock(m_mutex);
    if (!isWriting())
        return Error{m_path, cause::kCancelled};
    Outcome taken = file.takeName();
    if (taken)
        m_status = AVAssetWriterStatus::Completed;
    return taken;
}

void AssetWriting::conclude(const Outcome& outcome)
{
    Lock lock(m_mutex);
    if (!outcome && isWriting()) {
        m_status = AVAssetWriterStatus::Failed;
        m_error = Error{m_path, outcome.error().cause + keepRecording()};
    }
    m_cancelled.store(true);
    m_file.reset(); // before anybody is told
    releaseInputs(lock);
}

/// What can't be had again stays where there is something to be seen: an end of the error's message, or nothing.
std::string AssetWriting::keepRecording()
{
    constexpr std::uint64_t kNothingToBeSeen = 4096; // bytes
    if (!isRecording() || !m_file)
        return {};
    const Result<OpenedFile> file = openFileForReading(m_file->descriptorPath());
    if (!file || file->size <= kNothingToBeSeen)
        return {};
    m_file->keep();
    return "; what was recorded is in " + m_file->temporaryName();
}

} // namespace lamina
