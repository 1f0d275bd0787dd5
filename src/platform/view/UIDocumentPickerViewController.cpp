#include "platform/view/UIDocumentPickerViewController.h"

#include "platform/base/Localization.h"
#include "platform/files/FileCopying.h"
#include "platform/files/FileWriting.h"
#include "platform/view/FailureAlert.h"

#include <QCoreApplication>

#include <memory>
#include <utility>

namespace lamina {

namespace {

/// Of writing under a name that was to be free.
Outcome claimed(const Result<bool>& written, const std::string& path)
{
    if (!written)
        return written.error();
    if (!*written)
        return Error{path, QT_TRANSLATE_NOOP("Lamina", "there is something of that name")};
    return success();
}

} // namespace

Outcome writeFileAtPlace(const UIDocumentPlace& place, std::span<const std::uint8_t> bytes)
{
    return place.replaces ? writeFileAtomically(place.path, bytes)
                          : claimed(writeNewFile(place.path, bytes), place.path);
}

Outcome copyFileToPlace(const std::string& path, const UIDocumentPlace& place)
{
    const Result<FileFiller> fill = contentsOf(path);
    if (!fill)
        return fill.error();
    return place.replaces ? writeFileAtomically(place.path, *fill)
                          : claimed(writeNewFile(place.path, *fill), place.path);
}

UIDocumentPickerViewController::UIDocumentPickerViewController(std::string suggestedName, Answer answer)
    : m_suggestedName(std::move(suggestedName))
    , m_answer(std::move(answer))
{
    setModalPresentationStyle(UIModalPresentationStyle::OverFullScreen);
}

std::shared_ptr<UIDocumentPickerViewController> UIDocumentPickerViewController::makeForMovie(Answer answer)
{
    auto picker = std::make_shared<UIDocumentPickerViewController>(std::string(), std::move(answer));
    picker->m_asksForMovie = true;
    return picker;
}

void UIDocumentPickerViewController::choose(UIDocumentPlace place)
{
    finish(std::move(place), nullptr);
}

void UIDocumentPickerViewController::cancel()
{
    finish(std::nullopt, nullptr);
}

void UIDocumentPickerViewController::fail(const Error& error)
{
    finish(std::nullopt, &error);
}

void UIDocumentPickerViewController::finish(std::optional<UIDocumentPlace> place, const Error* failure)
{
    if (!std::exchange(m_choosing, false))
        return;
    const std::shared_ptr<UIViewController> self = shared_from_this();
    const std::shared_ptr<UIViewController> presenter = presentingViewController();
    emit answered();
    dismiss(true, [answer = std::move(m_answer), place = std::move(place)] {
        if (answer)
            answer(place);
    });
    if (failure && presenter)
        presentFailure(*presenter,
                       m_asksForMovie ? localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t open the movie"))
                                      : localizedString("Can’t ask for a place"),
                       *failure);
}

} // namespace lamina
