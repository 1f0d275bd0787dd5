#pragma once

#include "export/PromotionStep.h"
#include "export/SaveModelDetails.h"
#include "export/functions/ExportWork.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/AnimatedProperty.h"
#include "platform/view/UIActivityViewController.h"
#include "platform/view/UIDocumentPickerViewController.h"
#include "platform/view/UIViewController.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// The last screen of every export: it puts the result into the photo library where the type goes there, shows it, and
/// opens the system's share sheet at once; four doors open that again. Main thread.
///
/// What it says is true: "saved" is told when the library has answered, and a failure in an alert that offers another
/// place. Reading and writing go on in the background.
class ShareController : public UIViewController {
    Q_OBJECT
    Q_PROPERTY(QString headline READ headline NOTIFY savedChanged FINAL)
    Q_PROPERTY(QString fileName READ fileName NOTIFY savedChanged FINAL)
    Q_PROPERTY(QString fileSize READ fileSize NOTIFY savedChanged FINAL)
    Q_PROPERTY(QVariant shareImageView READ shareImageView NOTIFY previewChanged FINAL)
    Q_PROPERTY(double previewAspect READ previewAspect NOTIFY previewChanged FINAL)
    Q_PROPERTY(QString toastLbl READ toastLbl NOTIFY toastChanged FINAL)
    Q_PROPERTY(QObject* toastAlpha READ toastAlphaObject CONSTANT FINAL)
    Q_PROPERTY(double bannerHeightConstraint READ bannerHeightConstraint CONSTANT FINAL)

public:
    static constexpr double kToastAfter = 0.5;     ///< seconds after loading
    static constexpr double kToastStands = 1;      ///< seconds
    static constexpr double kToastFades = 3;       ///< seconds
    static constexpr double kPromotionAfter = 3.0; ///< seconds after loading

    ShareController();

    /// Takes over all that an exporter hands on. Before the view loads.
    void setDetails(const SaveModelDetails& details);
    /// The picture that stands for the result, and what a JPG shares.
    const UIImage& shareImage() const { return m_details.shareimage; }
    void setShareImage(UIImage image) { m_details.shareimage = std::move(image); }
    /// The type of saving.
    SavingtypeMethod fetchData() const { return m_details.saveType; }
    void setFetchData(SavingtypeMethod type) { m_details.saveType = type; }
    /// Path of the exported file, whatever its type; empty: none.
    const std::string& sharevideoURL() const { return m_details.sharedURL; }
    void setSharevideoURL(std::string path) { m_details.sharedURL = std::move(path); }

    /// Runs once, when the photo library has the result, or the place that the user has chosen in its stead.
    void setSavedHandler(std::function<void()> handler) { m_savedHandler = std::move(handler); }

    /// How far saving has come, in the user's language.
    QString headline() const;
    /// Of the file that the result is in, without its folder; empty: there is none yet.
    QString fileName() const;
    /// "2.4 MB"; empty: not known.
    QString fileSize() const { return m_fileSize; }
    /// The preview, a `UIImage`, no larger than it is shown; of a TIFF what its file holds. Empty until it is there.
    QVariant shareImageView() const { return QVariant::fromValue(m_preview); }
    /// Width by height of the preview's print, where the picture is not much too long for one; 1 until it is there.
    double previewAspect() const;
    /// What is told about the result, in the user's language.
    QString toastLbl() const { return m_toastLbl; }
    /// How much of that is seen, an `Animated<double>`: 0 until it is told.
    const Animated<double>& toastAlpha() const { return m_toastAlpha; }
    QObject* toastAlphaObject() { return &m_toastAlpha; }
    /// Height of the strip for a banner: nothing stands there.
    double bannerHeightConstraint() const { return 0; }

    /// The promotion step, which is kept while it runs; null: none runs.
    const std::shared_ptr<PromotionFetcher>& promotionCoordinator() const { return m_promotionCoordinator; }
    /// For all share screens from now on; empty functions: no promotion.
    static void setPromotionStep(PromotionStep step);

    /// Back to the editor, which is as it was.
    Q_INVOKABLE void backBtn();
    /// The doors: each opens the share sheet. A result that has no file where one is due is told in an alert.
    Q_INVOKABLE void whatsUpAction() { shareNow(); }
    Q_INVOKABLE void instaAction() { shareNow(); }
    Q_INVOKABLE void faceBookAction() { shareNow(); }
    Q_INVOKABLE void moreAction() { shareNow(); }
    /// Takes the message away: before its time, or where it doesn't fade by itself since nothing is to move.
    Q_INVOKABLE void dismissToast();

    void viewDidLoad() override;
    void viewWillDisappear(bool animated) override;

signals:
    void savedChanged();
    void previewChanged();
    void toastChanged();

private:
    enum class Saving { Under, Done, Failed };
    using Sheet = std::shared_ptr<UIActivityViewController>;

    void shareNow();
    void shareImageSheet(const UIImage& image);
    void follow(const Sheet& sheet);
    void sheetEnded(const UIActivityResult& result);

    void finishJob();
    void saveToLibrary();
    void saved(const Result<std::string>& path);
    void librarySaved(const Result<std::string>& path);
    void offerAnotherPlace(const Error& error);
    void askForPlace();
    void saveAt(const UIDocumentPlace& place);
    void learnFile();
    void makePreview();
    void setPreview(UIImage preview);

    void announce(const std::string& text);
    void showToast();
    void DelayFun();
    void takePromotion(const PromotionData& promotion);
    void presentPromotion();
    void presentPromotionSoon();
    bool isSheetOpen() const;
    bool isLeft() const;

    SaveModelDetails m_details;
    std::function<void()> m_savedHandler;
    Saving m_saving = Saving::Done;
    std::string m_file; ///< that holds the result: the exported one, or the library's
    QString m_fileSize;
    UIImage m_preview;
    QString m_toastLbl;
    Animated<double> m_toastAlpha;
    std::weak_ptr<UIActivityViewController> m_sheet;               ///< that is open
    std::vector<std::weak_ptr<UIActivityViewController>> m_sheets; ///< also those that are gone, with what was chosen
    int m_work = 0;                ///< sheets with what was chosen in them, and saving elsewhere, that are not over
    bool m_toastDue = false;       ///< it is time, once there is something to tell
    bool m_promotionDue = false;   ///< it is time, once the sheet has gone
    bool m_promotionTaken = false; ///< one is enough
    std::shared_ptr<PromotionFetcher> m_promotionCoordinator;
    std::optional<PromotionData> m_promotion; ///< to be shown
    DispatchTimer m_toastTimer;
    DispatchTimer m_promotionTimer;
};

} // namespace lamina
