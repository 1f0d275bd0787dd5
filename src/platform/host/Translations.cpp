#include "platform/host/Translations.h"

#include "platform/base/Localization.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <string_view>

namespace lamina {

namespace {

QStringList folders()
{
    const QString installed =
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../share/lamina/translations"));
    return {qEnvironmentVariable("LAMINA_TRANSLATIONS"), QDir::cleanPath(installed)};
}

/// Puts lamina_`language` over what is installed. False when no folder has it.
bool install(QTranslator& translator, const QString& language)
{
    for (const QString& folder : folders())
        if (!folder.isEmpty() && translator.load(QStringLiteral("lamina_") + language, folder))
            return QCoreApplication::installTranslator(&translator);
    return false;
}

/// The first of the user's languages that there is; English needs no more than what lies below all.
void installUsersLanguage(QTranslator& translator)
{
    for (QString language : QLocale::system().uiLanguages()) {
        if (language == QLatin1String("en") || language.startsWith(QLatin1String("en-")))
            return;
        if (install(translator, language.replace(QLatin1Char('-'), QLatin1Char('_'))))
            return;
    }
}

} // namespace

Translations::Translations()
{
    install(m_english, QStringLiteral("en"));
    installUsersLanguage(m_language);
    setTextLookup([](std::string_view key) {
        const QByteArray text(key.data(), static_cast<qsizetype>(key.size()));
        return QCoreApplication::translate("Lamina", text.constData()).toStdString();
    });
}

Translations::~Translations()
{
    setTextLookup({});
    QCoreApplication::removeTranslator(&m_language);
    QCoreApplication::removeTranslator(&m_english);
}

} // namespace lamina
