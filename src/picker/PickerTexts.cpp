#include "picker/PickerTexts.h"

#include "platform/base/Localization.h"
#include "platform/base/ShownText.h"
#include "platform/photos/PHAsset.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <cmath>
#include <filesystem>

namespace lamina {

namespace {

constexpr double kFarthest = 1e13; ///< seconds; beyond lies no year that anybody writes

/// How the user's language writes a day in full. It begins or ends with the weekday.
QString dayForm(const QLocale& locale)
{
    static const QRegularExpression weekday(QStringLiteral("[,،]?\\s*dddd[,،]?\\s*"));
    return locale.dateFormat(QLocale::LongFormat).remove(weekday);
}

} // namespace

QString dayText(double time)
{
    if (!(std::abs(time) < kFarthest))
        return {};
    const QLocale user;
    // Without a language of its own the system would count days of English in American order.
    const bool plain = user.language() == QLocale::C;
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(std::floor(time)));
    return user.toString(moment.date(), plain ? QStringLiteral("d MMMM yyyy") : dayForm(user));
}

QString photosText(std::size_t count)
{
    if (count == 1)
        return QString::fromStdString(localizedString(QT_TRANSLATE_NOOP("Lamina", "1 photo")));
    return QString::fromStdString(
        localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 photos"), {QString::number(count).toStdString()}));
}

QString shownName(const std::string& name)
{
    return QString::fromStdString(shownText(name, kReplacementSign));
}

QString shownFileName(const PHAsset& photo)
{
    return shownName(std::filesystem::path(photo.path).filename().string());
}

} // namespace lamina
