#include "platform/host/system/FileChooserPortal.h"

#include "platform/base/Localization.h"
#include "platform/files/FileURL.h"
#include "platform/photos/PictureFolders.h"

#include <utility>

namespace lamina {

namespace {

using Kind = FileChooserAnswer::Kind;

PortalCall chooserCall(const char* method, const std::string& parentWindow, const std::string& title,
                       QVariantMap options)
{
    return {QStringLiteral("FileChooser"),
            QString::fromLatin1(method),
            {QString::fromStdString(parentWindow), QString::fromStdString(title)},
            std::move(options)};
}

FileChooserAnswer answerOf(const PortalAnswer& answer)
{
    switch (answer.kind) {
    case PortalAnswer::Kind::Cancelled:
        return {Kind::Cancelled, {}, {}};
    case PortalAnswer::Kind::Unavailable:
    case PortalAnswer::Kind::Failed:
        return {Kind::Unavailable, {}, answer.error};
    case PortalAnswer::Kind::Taken:
        break;
    }
    const QStringList uris = answer.results.value(QStringLiteral("uris")).toStringList();
    if (uris.isEmpty())
        return {Kind::Failed, {}, Error{localizedString("photo"), "the file chooser named no file"}};
    const Result<std::string> path = pathOfFileURL(uris.first().toStdString());
    if (!path)
        return {Kind::Failed, {}, path.error()};
    return {Kind::Chosen, *path, {}};
}

} // namespace

FileChooserPortal::FileChooserPortal(BusConnector connector)
    : m_request(std::move(connector))
{
}

void FileChooserPortal::open(FileChooserQuestion question, Completion completion)
{
    ask(
        [question = std::move(question)]() mutable -> Result<PortalCall> {
            if (question.folder.empty())
                question.folder = samplesForBeginners();
            return chooserCall("OpenFile", question.parentWindow, question.title, fileChooserOptions(question));
        },
        std::move(completion));
}

void FileChooserPortal::save(const FileSaveQuestion& question, Completion completion)
{
    ask(
        [question]() -> Result<PortalCall> {
            return chooserCall("SaveFile", question.parentWindow, question.title, fileSaveOptions(question));
        },
        std::move(completion));
}

void FileChooserPortal::ask(PortalRequest::Prepare prepare, Completion completion)
{
    m_request.ask(std::move(prepare),
                  [completion = std::move(completion)](const PortalAnswer& answer) { completion(answerOf(answer)); });
}

} // namespace lamina
