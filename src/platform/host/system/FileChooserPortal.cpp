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

/// `what` was asked for, in the user's language.
FileChooserAnswer answerOf(const PortalAnswer& answer, const std::string& what)
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
        return {Kind::Failed, {}, Error{what, "the file chooser named no file"}};
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
        question.choosesFolder ? localizedString("folder") : localizedString("photo"),
        [question = std::move(question)]() mutable -> Result<PortalCall> {
            if (question.folder.empty() && !question.choosesFolder)
                question.folder = samplesForBeginners();
            return chooserCall("OpenFile", question.parentWindow, question.title, fileChooserOptions(question));
        },
        std::move(completion));
}

void FileChooserPortal::save(const FileSaveQuestion& question, Completion completion)
{
    ask(
        localizedString("The file"),
        [question]() -> Result<PortalCall> {
            return chooserCall("SaveFile", question.parentWindow, question.title, fileSaveOptions(question));
        },
        std::move(completion));
}

void FileChooserPortal::ask(std::string what, PortalRequest::Prepare prepare, Completion completion)
{
    m_request.ask(std::move(prepare), [what = std::move(what), completion = std::move(completion)](
                                          const PortalAnswer& answer) { completion(answerOf(answer, what)); });
}

} // namespace lamina
