#pragma once

#include "export/CheckMark.h"
#include "export/ExportProtocols.h"
#include "export/SheetViewController.h"
#include "export/functions/ExportWork.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>
#include <string>
#include <utility>

namespace lamina {

/// What every exporter is: a sheet with the options of one type of saving, and the button that does it. What is
/// exported is a picture or a clip. Main thread.
///
/// The work runs in the background, behind the progress panel; nothing else can be done on the sheet meanwhile. What
/// comes of it goes to the saving delegate, unless the sheet has gone. A failure is told on the panel, and the sheet
/// stays as it was. Options begin anew with every sheet.
class ExporterViewController : public SheetViewController, public savingMethodPass {
    Q_OBJECT
    Q_PROPERTY(int saveType READ saveTypeNumber CONSTANT FINAL)
    Q_PROPERTY(QString typeTitle READ typeTitle CONSTANT FINAL)
    Q_PROPERTY(QString typeIcon READ typeIcon CONSTANT FINAL)
    Q_PROPERTY(bool suggested READ isSuggested NOTIFY inputChanged FINAL)
    Q_PROPERTY(QString infoLbl READ infoLbl NOTIFY inputChanged FINAL)
    Q_PROPERTY(QString filePixels READ filePixelsText NOTIFY optionsChanged FINAL)
    Q_PROPERTY(bool loading READ isLoading NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool exporting READ isExporting NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool ready READ isReady NOTIFY stateChanged FINAL)

public:
    ~ExporterViewController() override;

    /// What is exported: one of the two, set before the view loads. A picture goes first.
    const UIImage& shareImage() const { return m_shareImage; }
    void setShareImage(UIImage image) { m_shareImage = std::move(image); }
    /// The path of a clip; empty: none.
    const std::string& videoUrl() const { return m_videoUrl; }
    void setVideoUrl(std::string path) { m_videoUrl = std::move(path); }
    /// Asked to open another exporter.
    void setDelegate(std::weak_ptr<NewSavingMethod> delegate) { m_delegate = std::move(delegate); }
    std::shared_ptr<NewSavingMethod> delegate() const { return m_delegate.lock(); }
    /// Receives the result.
    void setSavingDelegate(std::weak_ptr<DataPassingToShareController> delegate);
    std::shared_ptr<DataPassingToShareController> savingDelegate() const { return m_savingDelegate.lock(); }

    SavingtypeMethod saveType() const { return m_saveType; }
    /// Its number, for layouts.
    int saveTypeNumber() const { return static_cast<int>(m_saveType); }
    /// In the user's language.
    QString typeTitle() const;
    /// Name of an icon.
    QString typeIcon() const;
    /// Whether this type is the one that suits what is exported, and says so beside its name.
    virtual bool isSuggested() const { return false; }
    /// A notice for clips that this type makes a picture of; empty for a picture.
    virtual QString infoLbl() const;

    /// The picture that is worked on; of a clip a frame that stands for it, empty until it is there.
    const UIImage& tobeSavedimage() const { return m_tobeSavedimage; }
    /// The pixels that the picture will have in the file, as far as they are known before; empty (0 x 0) otherwise.
    virtual IntSize filePixels() const;
    /// The same in words: "1125 × 1125 pixels", or empty.
    QString filePixelsText() const;

    /// What the user has chosen.
    virtual ExportOptions options() const { return {}; }

    /// Whether the frame of a clip is still to come.
    bool isLoading() const { return m_loading; }
    /// Whether the work is under way.
    bool isExporting() const { return m_job != nullptr; }
    /// Whether the work can begin.
    bool isReady() const;
    bool isClosable() const override { return SheetViewController::isClosable() && !isExporting(); }

    /// Takes a picture or a clip in, see the class.
    void viewDidLoad() override;
    /// Stops the work under way: nobody hears what came of it.
    void viewWillDisappear(bool animated) override;

    /// The row of the file type: opens the chooser, this type marked.
    Q_INVOKABLE void handlefileTap();
    /// The chooser's answer: leaves, and has the exporter of that type opened; its own type changes nothing.
    void selectedtypeWithType(SavingtypeMethod type) override;
    /// Does the work with the options as they are now. Nothing while it can't begin.
    Q_INVOKABLE void downloadbtnAction();

signals:
    void inputChanged();
    void optionsChanged();
    void stateChanged();

protected:
    /// `pictureHeight`: of the sheet when a picture is exported; 0: as high as what it holds.
    ExporterViewController(SavingtypeMethod type, double pictureHeight);

    /// `tobeSavedimage` is there. Default: tells of it.
    virtual void takeWorkingImage();
    /// Flips a mark and the option behind it, and tells.
    void toggle(CheckMark& mark, bool& option);

private:
    struct Job;

    void loadFrame();
    void frameArrived(const Result<UIImage>& frame);
    void startExport(const ExportPlace& place);
    void abandonWork();
    void exportEnded(const std::shared_ptr<Job>& job, const Result<ExportedFile>& result);
    void handOver(const Job& job, const ExportedFile& file);
    void showFailure(const Job& job, const Error& error);
    void chooseAnotherPlace();
    ExportSource source() const;

    SavingtypeMethod m_saveType;
    double m_pictureHeight;
    UIImage m_shareImage;
    std::string m_videoUrl;
    std::weak_ptr<NewSavingMethod> m_delegate;
    std::weak_ptr<DataPassingToShareController> m_savingDelegate;
    UIImage m_tobeSavedimage;
    bool m_loading = false;
    std::shared_ptr<std::atomic<bool>> m_gone; ///< set when nobody waits for a frame any more
    std::shared_ptr<Job> m_job;                ///< the work under way
};

} // namespace lamina
