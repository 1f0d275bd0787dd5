#include "platform/host/Translations.h"

#include "platform/base/Localization.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>

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
    for (const QString& folder : folders()) {
        if (folder.isEmpty() || !m_translator.load(QLocale(), QStringLiteral("lamina"), QStringLiteral("_"), folder))
            continue;
        QCoreApplication::installTranslator(&m_translator);
        break;
    }
    setTextLookup([](std::string_view key) {
        const QByteArray text(key.data(), static_cast<qsizetype>(key.size()));
        return QCoreApplication::translate("Lamina", text.constData()).toStdString();
    });
}

Translations::~Translations()
{
    setTextLookup({});
    QCoreApplication::removeTranslator(&m_translator);
}

} // namespace lamina
