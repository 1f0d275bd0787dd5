#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/net/KeptQueue.h"
#include "platform/view/UIImageView.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace lamina {

class ProgressiveLoad;
class ProgressiveState;

/// Hears what becomes of a progressive view's loads. Every call is optional: the view makes those alone that
/// `respondsTo` named when the delegate was set. Main thread; the view may be destroyed by it.
class NYXProgressiveImageViewDelegate {
public:
    /// The calls below. The values are bits.
    enum class Call : unsigned {
        ImageDidLoad = 1,
        ImageDownloadCompleted = 2,
        ImageDownloadFailed = 4,
    };

    virtual ~NYXProgressiveImageViewDelegate() = default;

    /// True for the calls that this delegate wants; default none.
    virtual bool respondsTo(Call) const { return false; }

    /// The whole picture stands in the view, from the cache or from the network. The empty one where all has come, and
    /// it is no picture; the view then keeps what it shows.
    virtual void imageDidLoadWithImage(const UIImage&) {}
    /// The whole picture has come from the network; right after this it is set on the view.
    virtual void imageDownloadCompletedWithImage(const UIImage&) {}
    /// The load has failed: what had come of the file. The view keeps the last part of the picture; why it failed is
    /// in the view's `downloadError` and in the log.
    virtual void imageDownloadFailedWithData(std::span<const std::uint8_t>) {}
};

/// Shows a picture from the network as it comes, from the top, and keeps its file for a while. One load at a time.
///
/// The download and all decoding happen on the view's own queue; the view and its delegate are touched on the main
/// thread alone, which never waits for that queue. A view that goes away stops its load, of which nothing is heard any
/// more. Every file is a stranger's: at most 64 MB of it are taken, redirections and time are bounded
/// (`NSURLRequest`), and pixels by what a decoder takes.
///
/// While it loads, the next part of the picture is made when the last one has reached the view, when enough of the
/// file has come since, and when the network has had its time: so a picture that comes in a thousand pieces costs
/// little more than one that comes in ten. One of more than 32 megapixels is shown when it is whole.
class NYXProgressiveImageView : public UIImageView {
public:
    explicit NYXProgressiveImageView(const CGRect& frame = {});
    explicit NYXProgressiveImageView(const UIImage& image);
    ~NYXProgressiveImageView() override;

    /// Loads the picture of an address of "http" or "https". Ignored while one is being loaded.
    ///
    /// With `caching`, a file of the cache that is at most `cacheTime` old is shown instead, and the network left
    /// alone; an older one, and one that holds no picture, is deleted first.
    void loadImageAtURL(const std::string& url);
    /// Deletes the cache's file of the address that is being loaded, or was taken from the cache last.
    void resetCache();

    /// Deletes the cache of all addresses. From any thread.
    static void resetImageCache();
    /// The folder of the cache, in the user's folder for caches; empty without one. From any thread.
    static std::string cacheDirectoryAddress();
    /// The orientation, in the numbers of `UIImageOrientation`, of a metadata value: 0 for anything but 2 to 8.
    static int exifOrientationToiOSOrientation(int value);
    /// A picture of the final size (pixels) whose upper rows are the partial one, unstretched; below it is clear where
    /// the partial one has alpha, else black. Empty where a size is none that is drawn. From any thread.
    static CGImage createTransitoryImage(const CGImage& partial, IntSize final);

    /// Whether files are taken from the cache and put there, byte for byte. What holds no picture, and what comes with
    /// the status of a failure, is not put there: it would stand for the address for a while. Default false.
    bool caching() const;
    void setCaching(bool caching);
    /// Whether a download is under way; it ends after the last call of the delegate. Reading from the cache is none.
    bool downloading() const;
    /// Seconds for which a file of the cache is good; default 604800, a week.
    double cacheTime() const { return m_cacheTime; }
    void setCacheTime(double seconds) { m_cacheTime = seconds; }
    /// Why the last load has failed, or gave no picture; none while one is under way and after a good one.
    std::optional<Error> downloadError() const;

    std::shared_ptr<NYXProgressiveImageViewDelegate> delegate() const { return m_delegate.lock(); }
    /// Kept weakly. What it responds to is asked here, and only where it is another one than before.
    void setDelegate(const std::shared_ptr<NYXProgressiveImageViewDelegate>& delegate);

private:
    friend class ProgressiveLoad;
    using Call = NYXProgressiveImageViewDelegate::Call;

    void initializeAttributes();
    std::shared_ptr<NYXProgressiveImageViewDelegate> delegateFor(Call call) const;

    std::shared_ptr<ProgressiveState> m_state;
    std::shared_ptr<ProgressiveLoad> m_load; ///< the last one
    std::optional<KeptQueue> m_queue;        ///< since the first load
    std::weak_ptr<NYXProgressiveImageViewDelegate> m_delegate;
    unsigned m_delegateFlags = 0;
    double m_cacheTime = 0;
};

} // namespace lamina
