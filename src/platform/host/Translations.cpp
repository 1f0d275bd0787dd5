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

} // namespace

Translations::Translations()
{
    load();
    setTextLookup([](std::string_view key) {
        const QByteArray text(key.data(), static_cast<qsizetype>(key.size()));
        return QCoreApplication::translate("Lamina", text.constData()).toStdString();
    });
}

/// The first of the user's languages that there is; the texts themselves are English.
void Translations::load()
{
    for (QString language : QLocale::system().uiLanguages()) {
        if (language == QLatin1String("en") || language.startsWith(QLatin1String("en-")))
            return;
        language.replace(QLatin1Char('-'), QLatin1Char('_'));
        for (const QString& folder : folders()) {
            if (folder.isEmpty() || !m_translator.load(QStringLiteral("lamina_") + language, folder))
                continue;
            QCoreApplication::installTranslator(&m_translator);
            return;
        }
    }
}

Translations::~Translations()
{
    setTextLookup({});
    QCoreApplication::removeTranslator(&m_translator);
}

} // namespace lamina
