#include "app/AboutViewController.h"

#include "AboutFacts.h"
#include "platform/application/UIApplication.h"
#include "platform/base/Localization.h"

#include <QRegularExpression>

#include <string_view>

namespace lamina {

AboutViewController::AboutViewController()
{
    setTitle(localizedString("About Lamina"));
    setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
}

void AboutViewController::setPage(Page page)
{
    if (m_page == page)
        return;
    m_page = page;
    emit pageChanged();
}

QString AboutViewController::version() const
{
    return QString::fromLatin1(kApplicationVersion);
}

/// Its lines are as long as the file's; a paragraph is wrapped anew wherever it is shown.
QString AboutViewController::licence() const
{
    static const QRegularExpression lineEnd(QStringLiteral("(?<!\\n)\\n(?!\\n)"));
    return QString::fromUtf8(kLicenceText).trimmed().replace(lineEnd, QStringLiteral(" "));
}

bool AboutViewController::takesReports() const
{
    return !std::string_view(kBugTracker).empty();
}

void AboutViewController::report()
{
    if (takesReports())
        UIApplication::shared().openURL(kBugTracker);
}

void AboutViewController::close()
{
    dismiss(true);
}

} // namespace lamina
