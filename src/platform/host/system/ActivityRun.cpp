#include "platform/host/system/ActivityRun.h"

#include "platform/application/UIApplication.h"
#include "platform/base/Localization.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileURL.h"
#include "platform/host/system/BackgroundWork.h"
#include "platform/host/system/DetachedProgram.h"
#include "platform/host/system/PictureClipboard.h"
#include "platform/host/system/SharingServices.h"
#include "platform/photos/PictureQueue.h"
#include "platform/view/UIDocumentPickerViewController.h"
#include "platform/view/UIViewController.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>

#include <filesystem>
#include <optional>
#include <utility>

namespace lamina {

namespace {

using Type = UIActivityType;

constexpr const char* kNoProgram = QT_TRANSLATE_NOOP("Lamina", "no program takes it");

/// Over the alert that tells why it didn't work.
std::string failureTitle(Type type)
{
    switch (type) {
    case Type::OpenWith:
        return localizedString("Can’t open the file");
    case Type::Mail:
        return localizedString("Can’t send the file");
    case Type::Copy:
        return localizedString("Can’t copy");
    case Type::SaveCopy:
        return localizedString("Can’t save the copy");
    case Type::ShowInFolder:
        return localizedString("Can’t show the file");
    case Type::Print:
        break;
    }
    return localizedString("Can’t print");
}

bool openPath(const std::string& path)
{
    return UIApplication::shared().openURL(fileURLOfPath(path));
}

} // namespace

ActivityRun::ActivityRun(std::shared_ptr<UIActivityViewController> sheet, UIActivityType type, Desktop desktop,
                         QObject* parent)
    : QObject(parent)
    , m_sheet(std::move(sheet))
    , m_type(type)
    , m_desktop(std::move(desktop))
    , m_request(m_desktop.connector)
{
}

void ActivityRun::start()
{
    if (m_sheet->file())
        begin();
    else
        connect(m_sheet.get(), &UIActivityViewController::fileChanged, this, &ActivityRun::begin,
                Qt::SingleShotConnection);
}

void ActivityRun::begin()
{
    const Result<std::string>& file = *m_sheet->file();
    if (file)
        m_path = *file;
    else if (m_type != Type::Copy || !m_sheet->image())
        return fail(file.error());
    switch (m_type) {
    case Type::OpenWith:
        return openWith();
    case Type::Mail:
        return mail();
    case Type::Copy:
        return copy();
    case Type::SaveCopy:
        return saveCopy();
    case Type::ShowInFolder:
        return showInFolder();
    case Type::Print:
        return print();
    }
}

QString ActivityRun::name() const
{
    return QString::fromStdString(std::filesystem::path(m_path).filename().string());
}

void ActivityRun::openWith()
{
    askWithFile(
        [window = QString::fromStdString(m_desktop.parentWindow)](const QDBusUnixFileDescriptor& file) {
            return PortalCall{QStringLiteral("OpenURI"),
                              QStringLiteral("OpenFile"),
                              {window, QVariant::fromValue(file)},
                              {{QStringLiteral("ask"), true}, {QStringLiteral("writable"), false}}};
        },
        [path = m_path] { return openPath(path); });
}

void ActivityRun::mail()
{
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    askWithFile(
        [window = QString::fromStdString(m_desktop.parentWindow), name = name()](const QDBusUnixFileDescriptor& file) {
            return PortalCall{
                QStringLiteral("Email"),
                QStringLiteral("ComposeEmail"),
                {window},
                {{QStringLiteral("subject"), name},
                 {QStringLiteral("attachment_fds"), QVariant::fromValue(QList<QDBusUnixFileDescriptor>{file})}}};
        },
        [path = QString::fromStdString(m_path)] {
            return startProgram(QStringLiteral("xdg-email"), {QStringLiteral("--attach"), path});
        });
}

void ActivityRun::copy()
{
    inBackground<Result<CopiedThing>>(
        pictureQueue(), this, [image = m_sheet->image(), path = m_path] { return copiedThing(image, path); },
        [this](const Result<CopiedThing>& thing) {
            if (!thing)
                return fail(thing.error());
            QGuiApplication::clipboard()->setMimeData(mimeDataOf(*thing).release());
            end(true);
        });
}

void ActivityRun::saveCopy()
{
    const std::shared_ptr<UIViewController> screen = m_sheet->presenter();
    if (!screen)
        return end(false);
    screen->present(std::make_shared<UIDocumentPickerViewController>(
                        name().toStdString(),
                        [self = QPointer(this)](const std::optional<UIDocumentPlace>& place) {
                            if (self && place)
                                self->copyTo(*place);
                            else if (self)
                                self->end(false);
                        }),
                    true);
}

void ActivityRun::copyTo(const UIDocumentPlace& place)
{
    inBackground<Outcome>(
        pictureQueue(), this, [path = m_path, place] { return copyFileToPlace(path, place); },
        [this, place](const Outcome& outcome) {
            if (outcome)
                end(true, place.path);
            else
                fail(outcome.error());
        });
}

void ActivityRun::showInFolder()
{
    inBackground<QDBusConnection>(busQueue(), this, m_desktop.connector, [this](const QDBusConnection& bus) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            kFileManager, QStringLiteral("/org/freedesktop/FileManager1"), kFileManager, QStringLiteral("ShowItems"));
        call << QStringList{QString::fromStdString(fileURLOfPath(m_path))} << QString();
        auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            // Without a file manager that answers: the folder, in whatever opens folders.
            const std::string folder = std::filesystem::path(m_path).parent_path().string();
            if (!watcher->isError() || openPath(folder))
                end(true);
            else
                fail({folder, QT_TRANSLATE_NOOP("Lamina", "no program opens folders")});
        });
    });
}

void ActivityRun::print()
{
    m_request.ask(
        [window = QString::fromStdString(m_desktop.parentWindow), name = name()]() -> Result<PortalCall> {
            return PortalCall{QStringLiteral("Print"),
                              QStringLiteral("PreparePrint"),
                              {window, name, QVariantMap(), QVariantMap()},
                              {{QStringLiteral("modal"), true}}};
        },
        [this](const PortalAnswer& answer) {
            if (answer.kind == PortalAnswer::Kind::Taken)
                printPrepared(answer.results);
            else
                answered(answer, [] { return false; });
        });
}

void ActivityRun::printPrepared(const QVariantMap& prepared)
{
    askWithFile(
        [window = QString::fromStdString(m_desktop.parentWindow), name = name(),
         token = prepared.value(QStringLiteral("token")).toUInt()](const QDBusUnixFileDescriptor& file) {
            return PortalCall{QStringLiteral("Print"),
                              QStringLiteral("Print"),
                              {window, name, QVariant::fromValue(file)},
                              {{QStringLiteral("token"), token}, {QStringLiteral("modal"), true}}};
        },
        [] { return false; });
}

void ActivityRun::askWithFile(MakeCall makeCall, std::function<bool()> otherWay)
{
    m_request.ask(
        [path = m_path, makeCall = std::move(makeCall)]() -> Result<PortalCall> {
            const Result<OpenedFile> file = openFileForReading(path);
            if (!file)
                return file.error();
            return makeCall(QDBusUnixFileDescriptor(file->descriptor.get()));
        },
        [this, otherWay = std::move(otherWay)](const PortalAnswer& answer) { answered(answer, otherWay); });
}

void ActivityRun::answered(const PortalAnswer& answer, const std::function<bool()>& otherWay)
{
    switch (answer.kind) {
    case PortalAnswer::Kind::Taken:
        return end(true);
    case PortalAnswer::Kind::Cancelled:
        return end(false);
    case PortalAnswer::Kind::Failed:
        return fail(answer.error);
    case PortalAnswer::Kind::Unavailable:
        break;
    }
    if (otherWay())
        end(true);
    else
        fail({name().toStdString(), kNoProgram});
}

void ActivityRun::end(bool completed, const std::string& path)
{
    m_sheet->end(completed, path);
    emit over();
}

void ActivityRun::fail(const Error& error)
{
    m_sheet->fail(failureTitle(m_type), error);
    emit over();
}

} // namespace lamina
