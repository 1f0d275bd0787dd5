#include "platform/view/UIActivityViewController.h"

#include "platform/base/Localization.h"
#include "platform/files/ASCIICase.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/view/FailureAlert.h"

#include <QCoreApplication>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// What a row says; an empty line is made of the file.
struct Activity {
    UIActivityType type;
    const char* icon;
    const char* title;
    const char* line;
};

// In the order of the sheet.
constexpr std::array kActivities{
    Activity{UIActivityType::OpenWith, "open_with", QT_TRANSLATE_NOOP("Lamina", "Open with"),
             QT_TRANSLATE_NOOP("Lamina", "Another app on this computer")},
    Activity{UIActivityType::Mail, "mail", QT_TRANSLATE_NOOP("Lamina", "Mail"),
             QT_TRANSLATE_NOOP("Lamina", "As an attachment")},
    Activity{UIActivityType::Copy, "copy", QT_TRANSLATE_NOOP("Lamina", "Copy"), ""},
    Activity{UIActivityType::SaveCopy, "save_as", QT_TRANSLATE_NOOP("Lamina", "Save a copy"),
             QT_TRANSLATE_NOOP("Lamina", "Under another name or place")},
    Activity{UIActivityType::ShowInFolder, "folder", QT_TRANSLATE_NOOP("Lamina", "Show in folder"), ""},
    Activity{UIActivityType::Print, "print", QT_TRANSLATE_NOOP("Lamina", "Print"),
             QT_TRANSLATE_NOOP("Lamina", "On paper")},
};

/// As the user knows it: "Pictures › Lamina": the folder as steps, from the user's home where it lies in there.
std::string folderInWords(const std::string& path)
{
    namespace fs = std::filesystem;
    const fs::path folder = fs::path(path).parent_path();
    const char* const home = std::getenv("HOME");
    const fs::path inHome = home ? folder.lexically_relative(home) : fs::path();
    const bool isInHome = !inHome.empty() && *inHome.begin() != ".." && *inHome.begin() != ".";
    std::string words;
    for (const fs::path& step : isInHome ? inHome : folder.relative_path())
        words += (words.empty() ? "" : " › ") + step.string();
    return words.empty() ? folder.string() : words;
}

bool isPDF(const std::string& path)
{
    return equalIgnoringCase(std::filesystem::path(path).extension().string(), ".pdf");
}

/// What of a file goes to the clipboard.
std::string copyLine(bool isPicture)
{
    return isPicture ? localizedString("The picture, to the clipboard") : localizedString("The file, to the clipboard");
}

} // namespace

UIActivityViewController::UIActivityViewController(UIImage image)
    : m_image(std::move(image))
    , m_file(Error{"", QT_TRANSLATE_NOOP("Lamina", "there is no file")})
    , m_rows({{"type", &UIActivityRow::type},
              {"iconName", &UIActivityRow::icon},
              {"title", &UIActivityRow::title},
              {"line", &UIActivityRow::line}})
{
    setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
}

UIActivityViewController::UIActivityViewController(std::string path)
    : UIActivityViewController(UIImage())
{
    if (!path.empty())
        m_file = std::move(path);
}

void UIActivityViewController::setFile(Result<std::string> path)
{
    m_file = std::move(path);
    makeRows();
    emit fileChanged();
}

void UIActivityViewController::setServed(std::set<UIActivityType> served)
{
    m_served = std::move(served);
    m_ready = true;
    makeRows();
    emit readyChanged();
}

/// A file that is still to come is counted on.
bool UIActivityViewController::isPossible(UIActivityType type) const
{
    if (!m_served.contains(type))
        return false;
    if (type == UIActivityType::Copy && m_image)
        return true;
    if (type == UIActivityType::Print)
        return m_file && *m_file && isPDF(**m_file);
    return !m_file || m_file->ok();
}

void UIActivityViewController::makeRows()
{
    const std::string path = m_file && *m_file ? **m_file : std::string();
    const auto lineOf = [&](const Activity& activity) -> std::string {
        if (activity.type == UIActivityType::Copy)
            return copyLine(m_image || pictureFormatForFileName(path));
        if (activity.type == UIActivityType::ShowInFolder)
            return path.empty() ? localizedString("Where it was saved") : folderInWords(path);
        return localizedString(activity.line);
    };
    std::vector<UIActivityRow> rows;
    for (const Activity& activity : kActivities)
        if (isPossible(activity.type))
            rows.push_back({activity.type, activity.icon, localizedString(activity.title), lineOf(activity)});
    // Rows that stay keep their items, and the keyboard.
    if (rows.size() != m_rows.rows().size())
        m_rows.reset(std::move(rows));
    else
        for (std::size_t i = 0; i < rows.size(); ++i)
            m_rows.change(i, std::move(rows[i]));
}

void UIActivityViewController::choose(int row)
{
    if (row >= 0 && static_cast<std::size_t>(row) < m_rows.rows().size())
        leave(m_rows.rows()[static_cast<std::size_t>(row)].type);
}

void UIActivityViewController::cancel()
{
    leave(std::nullopt);
}

void UIActivityViewController::leave(std::optional<UIActivityType> type)
{
    if (std::exchange(m_left, true))
        return;
    m_type = type;
    m_presenter = presentingViewController();
    dismiss(true, [this] {
        emit gone();
        if (m_type)
            emit chosen(*m_type);
        else
            end(false);
    });
}

void UIActivityViewController::end(bool completed, const std::string& path)
{
    if (const CompletionWithItemsHandler handler = std::exchange(m_handler, {}))
        handler({m_type, completed, path});
}

void UIActivityViewController::fail(std::string title, const Error& error)
{
    if (const std::shared_ptr<UIViewController> screen = presenter())
        presentFailure(*screen, std::move(title), error);
    end(false);
}

} // namespace lamina
