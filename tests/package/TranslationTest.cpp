#include <QDir>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace lamina {
namespace {

struct Message {
    QString source;
    QString comment;
    QString translation;
};

/// What a translator finished in a .ts file; texts that count something are left out, they have more than one form.
std::vector<Message> finishedMessages(const QString& path)
{
    std::vector<Message> messages;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    QXmlStreamReader xml(&file);
    bool finished = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"message") {
            messages.emplace_back();
            finished = !xml.attributes().hasAttribute(QStringLiteral("numerus"));
        } else if (xml.name() == u"source") {
            messages.back().source = xml.readElementText();
        } else if (xml.name() == u"comment") {
            messages.back().comment = xml.readElementText();
        } else if (xml.name() == u"translation") {
            finished = finished && !xml.attributes().hasAttribute(QStringLiteral("type"));
            messages.back().translation = xml.readElementText(QXmlStreamReader::SkipChildElements);
            if (!finished)
                messages.pop_back();
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return messages;
}

/// The places where values are put in, "%1" or "%n", sorted: a translation may move them but lose none.
std::vector<QString> placeholders(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("%L?[0-9n]+"));
    std::vector<QString> found;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();)
        found.push_back(matches.next().captured());
    std::sort(found.begin(), found.end());
    return found;
}

QStringList languages()
{
    return QDir(QStringLiteral(LAMINA_TRANSLATION_SOURCES)).entryList({QStringLiteral("lamina_*.ts")});
}

TEST(Translations, EveryFinishedTextIsFoundInTheCompiledFile)
{
    ASSERT_FALSE(languages().isEmpty());
    for (const QString& name : languages()) {
        SCOPED_TRACE(name.toStdString());
        const QString code = name.section(u'_', 1).section(u'.', 0, 0);
        QTranslator translator;
        ASSERT_TRUE(translator.load(QLocale(code), QStringLiteral("lamina"), QStringLiteral("_"),
                                    QStringLiteral(LAMINA_BUILT_TRANSLATIONS)));
        const std::vector<Message> messages = finishedMessages(QStringLiteral(LAMINA_TRANSLATION_SOURCES "/") + name);
        EXPECT_FALSE(messages.empty());
        for (const Message& message : messages) {
            const QString found = translator.translate("Lamina", message.source.toUtf8().constData(),
                                                       message.comment.toUtf8().constData());
            // A translation that equals its text is left out; the look-up falls back to the text.
            EXPECT_EQ((found.isEmpty() ? message.source : found).toStdString(), message.translation.toStdString());
        }
    }
}

TEST(Translations, KeepThePlacesOfValues)
{
    for (const QString& name : languages())
        for (const Message& message : finishedMessages(QStringLiteral(LAMINA_TRANSLATION_SOURCES "/") + name))
            EXPECT_EQ(placeholders(message.translation), placeholders(message.source))
                << name.toStdString() << ": " << message.source.toStdString();
}

} // namespace
} // namespace lamina
