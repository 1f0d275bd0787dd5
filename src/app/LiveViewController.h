#pragma once

#include "app/LiveChain.h"
#include "app/LiveClip.h"
#include "app/LiveFilters.h"
#include "app/LiveFrames.h"
#include "app/LiveSource.h"
#include "editors/collage/CollageFilterRow.h"
#include "editors/collage/CollageFilters.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIView.h"
#include "platform/view/UIViewController.h"

#include <QAbstractItemModel>
#include <QString>
#include <QVariant>
#include <QVariantList>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

class GPUImageView;
class LiveCamera;
class LiveMovie;

/// The live screen: a camera or a movie through a look and effects, as it goes. What is seen is compared with what
/// comes in, kept as a still in the photo library, and recorded as a clip. Main thread.
///
/// The source runs only while the screen is seen and nothing has paused it; what stands in its way is stated in the
/// picture's place, and a camera that comes back goes on.
class LiveViewController : public UIViewController, public PhotoReceiver {
    Q_OBJECT
    /// "camera" or "movie".
    Q_PROPERTY(QString source READ sourceName NOTIFY sourceChanged FINAL)
    Q_PROPERTY(bool canSwitchCamera READ canSwitchCamera NOTIFY sourceChanged FINAL)
    /// The first frame is waited for.
    Q_PROPERTY(bool starting READ isStarting NOTIFY stateChanged FINAL)
    /// Something stands in the way.
    Q_PROPERTY(bool stopped READ isStopped NOTIFY stateChanged FINAL)
    /// What stands in the way, a sentence or two; empty: nothing.
    Q_PROPERTY(QString trouble READ trouble NOTIFY stateChanged FINAL)
    /// The user has forbidden the camera, and the system's settings allow it again.
    Q_PROPERTY(bool denied READ isDenied NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool paused READ isPaused NOTIFY runChanged FINAL)
    Q_PROPERTY(bool recording READ isRecording NOTIFY runChanged FINAL)
    /// Times go on: who shows them asks again from time to time, by `tick`.
    Q_PROPERTY(bool ticking READ isTicking NOTIFY runChanged FINAL)
    Q_PROPERTY(QString clipTime READ clipTime NOTIFY timeChanged FINAL)
    Q_PROPERTY(double position READ position NOTIFY timeChanged FINAL)
    Q_PROPERTY(double duration READ duration NOTIFY sourceChanged FINAL)
    /// Width by height of what is seen; 0: not known yet.
    Q_PROPERTY(double aspect READ aspect NOTIFY aspectChanged FINAL)
    /// For a ToolRow: the bar of a phone, and the row of a side panel.
    Q_PROPERTY(QVariantList tools READ tools NOTIFY toolsChanged FINAL)
    Q_PROPERTY(QVariantList sideTools READ sideTools NOTIFY toolsChanged FINAL)
    /// "filter" or "effects": what stands under the picture where there is no room for both.
    Q_PROPERTY(QString panel READ panel WRITE setPanel NOTIFY panelChanged FINAL)
    Q_PROPERTY(QAbstractItemModel* thumbnails READ thumbnails CONSTANT FINAL)
    /// Row of the look that is in force.
    Q_PROPERTY(int lookRow READ lookRow NOTIFY filtersChanged FINAL)
    Q_PROPERTY(QString lookName READ lookName NOTIFY filtersChanged FINAL)
    Q_PROPERTY(QVariant lookPicture READ lookPicture NOTIFY lookPictureChanged FINAL)
    /// As an editor's.
    Q_PROPERTY(QVariantList sliders READ sliders NOTIFY filtersChanged FINAL)
    Q_PROPERTY(int changedSliders READ changedSliders NOTIFY filtersChanged FINAL)
    Q_PROPERTY(bool comparing READ isComparing NOTIFY compareChanged FINAL)
    /// Where the line between before and now stands, 0 to 1 from the left.
    Q_PROPERTY(double line READ line WRITE setLine NOTIFY compareChanged FINAL)
    /// A finger on the picture has it shown as it came.
    Q_PROPERTY(bool showsBefore READ showsBefore NOTIFY compareChanged FINAL)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged FINAL)
    /// Whether there is a file that the notice can offer.
    Q_PROPERTY(bool noticeShares READ noticeShares NOTIFY noticeChanged FINAL)

public:
    /// Starting: the first frame is waited for. Stopped: something stands in the way.
    enum State { Starting, Live, Stopped };

    LiveViewController();
    ~LiveViewController() override;

    /// The movie to begin with; before the view loads. Without one it is the camera.
    void setMovie(std::string path) { m_firstMovie = std::move(path); }

    /// See the property.
    QString sourceName() const;
    /// See the property.
    bool canSwitchCamera() const;
    State state() const { return m_state; }
    bool isStarting() const { return m_state == Starting; }
    bool isStopped() const { return m_state == Stopped; }
    /// See the property.
    QString trouble() const;
    bool isDenied() const { return m_denied; }
    bool isPaused() const { return m_paused; }
    bool isRecording() const { return m_clip != nullptr; }
    /// See the property.
    bool isTicking() const;
    /// See the property.
    QString clipTime() const;
    /// See the property.
    double position() const;
    /// See the property.
    double duration() const;
    /// Of the last frame, as its source told it.
    CMTime frameTime() const { return m_frames->time(); }
    double aspect() const { return m_aspect; }
    /// See the property.
    QVariantList tools() const;
    /// See the property.
    QVariantList sideTools() const;
    QString panel() const { return m_panel; }
    /// See the property.
    void setPanel(const QString& panel);
    /// See the property.
    QAbstractItemModel* thumbnails() { return &m_row.thumbnails(); }
    int lookRow() const { return m_filters.look - kFirstCollageFilter; }
    /// See the property.
    QString lookName() const;
    /// See the property.
    QVariant lookPicture() const;
    /// See the property.
    QVariantList sliders() const;
    /// See the property.
    int changedSliders() const { return lamina::changedSliders(m_filters); }
    const LiveFilters& filters() const { return m_filters; }
    bool isComparing() const { return m_comparing; }
    double line() const { return m_line; }
    /// See the property.
    void setLine(double line);
    bool showsBefore() const { return m_showsBefore; }
    QString notice() const { return m_notice; }
    /// See the property.
    bool noticeShares() const { return !m_noticeFile.empty(); }

    /// By identifier: "camera", "movie", "compare", "still", "clip", "pause", "reset".
    Q_INVOKABLE void chooseTool(const QString& identifier);
    /// Back to the camera.
    Q_INVOKABLE void useCamera();
    /// To the next camera of those that are there.
    Q_INVOKABLE void switchCamera();
    /// Asks for a movie.
    Q_INVOKABLE void chooseMovie();
    /// Plays it; where it is none an alert says so, and the source stays.
    void openMovie(const std::string& path);
    /// Starts the source again after something stood in its way.
    Q_INVOKABLE void tryAgain();
    /// The system's, which allow the camera again.
    Q_INVOKABLE void openSettings();
    /// The source stands still, or goes on; its last frame stays.
    Q_INVOKABLE void togglePaused();
    /// Plays the movie from there, in seconds, or shows the frame that is there.
    Q_INVOKABLE void seek(double seconds);
    /// By its tag.
    Q_INVOKABLE void chooseLook(int tag);
    /// The next one, or the one before: ±1. It goes round.
    Q_INVOKABLE void stepLook(int by);
    /// As an editor's sliders ask.
    Q_INVOKABLE void beginSliding(int) {}
    /// See beginSliding.
    Q_INVOKABLE void slide(int tag, double value);
    Q_INVOKABLE void endSliding(int) {}
    /// As it is written beside the slider.
    Q_INVOKABLE QString sliderText(int tag, double value) const;
    /// Look and effects as at first.
    Q_INVOKABLE void resetFilters();
    /// Before and now beside each other, or now alone. The line begins in the middle.
    Q_INVOKABLE void toggleComparing();
    /// Saves what is seen now, in the source's full size, into the photo library.
    Q_INVOKABLE void takeStill();
    /// Begins a clip, or ends it, which keeps it.
    Q_INVOKABLE void toggleClip();
    /// Has times that go on asked for again.
    Q_INVOKABLE void tick();
    /// The notice has been read.
    Q_INVOKABLE void dismissNotice();
    /// Opens the share sheet with the file that the notice tells of.
    Q_INVOKABLE void shareNotice();
    /// Leaves; a clip under way is kept.
    Q_INVOKABLE void back();

    /// Points of the place in which the picture is shown; the canvas takes that size.
    Q_INVOKABLE void layOut(double width, double height);
    /// Whether the window is to be seen at all.
    Q_INVOKABLE void setWindowShown(bool shown);

    std::shared_ptr<UIView> canvasView() override;
    void viewDidLoad() override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    bool wantsPhotos() const override { return true; }
    /// A file that is dropped or pasted is played, where it is a movie.
    void receivePhotos(std::vector<PhotoSource> photos) override;

signals:
    void sourceChanged();
    void stateChanged();
    void runChanged();
    void timeChanged();
    void aspectChanged();
    void toolsChanged();
    void panelChanged();
    void filtersChanged();
    void lookPictureChanged();
    void compareChanged();
    void noticeChanged();

private:
    std::weak_ptr<LiveViewController> weakSelf();
    LiveCamera* camera() const;
    LiveMovie* movie() const;
    void setSource(std::shared_ptr<LiveSource> source, const std::string& name);
    bool shouldRun() const;
    void update();
    bool mayUseCamera();
    void waitForCamera();
    void stopFor(const Error& error, bool denied = false);
    void clearTrouble();
    void setState(State state);
    void tellRun();
    void frameCame(CGSize size);
    void camerasChanged();
    void changeFilters(const LiveFilters& filters);
    void refreshThumbnails();
    void setShowsBefore(bool shows);
    void layOutBefore();
    void press(UIGestureRecognizer& gesture);
    void stillTaken(const UIImage& picture, const std::optional<Error>& error);
    void beginClip();
    void endClip();
    void tellNotice(const std::string& text, std::string file = {});

    std::string m_firstMovie;
    std::shared_ptr<LiveFrames> m_frames;
    std::shared_ptr<LiveChain> m_chain;
    std::shared_ptr<LiveSource> m_source;
    std::shared_ptr<UIView> m_canvas;
    std::shared_ptr<GPUImageView> m_nowView;
    std::shared_ptr<UIView> m_beforeClip; ///< cuts what is seen as it came at the line
    std::shared_ptr<GPUImageView> m_beforeView;
    CollageFilterRow m_row{kLiveLookCount};
    std::unique_ptr<LiveClip> m_clip;
    LiveFilters m_filters;
    std::vector<LiveSlider> m_sliders;

    State m_state = Starting;
    std::optional<Error> m_error; ///< what stands in the way
    bool m_denied = false;        ///< it is the user's own answer
    bool m_asking = false;        ///< the user is asked
    bool m_paused = false;
    bool m_windowShown = true;
    bool m_takesStill = false;
    bool m_thumbnailsDue = true;
    double m_aspect = 0;
    QString m_panel = QStringLiteral("filter");
    bool m_comparing = false;
    double m_line = 0.5;
    bool m_showsBefore = false;
    QString m_notice;
    std::string m_noticeFile;
    int m_opening = 0; ///< of the movie that is being opened; an earlier one is dropped
    NotificationObserver m_devices;
    DispatchTimer m_patience; ///< for a camera that is still to be found
};

} // namespace lamina
