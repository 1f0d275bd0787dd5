#include "platform/view/UIDocumentPickerViewController.h"

#include "platform/base/Localization.h"
#include "platform/files/FileWriting.h"
#include "platform/view/FailureAlert.h"

#include <QCoreApplication>

#include <memory>
#include <utility>

namespace lamina {

Outcome writeFileAtPlace(const UIDocumentPlace& place, std::span<const std::uint8_t> bytes)
{
    if (place.replaces)
        return writeFileAtomically(place.path, bytes);
    const Result<bool> written = writeNewFile(place.path, bytes);
    if (!written)
        return written.error();
    if (!*written)
        return Error{place.path, QT_TRANSLATE_NOOP("Lamina", "there is something of that name")};
    return success();
}

UIDocumentPickerViewController::UIDocumentPickerViewController(std::string suggestedName, Answer answer)
    : m_suggestedName(std::move(suggestedName))
    , m_answer(std::move(answer))
{
    setModalPresentationStyle(UIModalPresentationStyle::OverFullScreen);
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
        presentFailure(*presenter, localizedString("Can’t ask for a place"), *failure);
}

} // namespace lamina
