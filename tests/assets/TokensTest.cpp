// The look's numbers, from the designers' file to what QML sees. The file is read from its source, as by an engine that
// can't use what was compiled.
#include <QColor>
#include <QFile>
#include <QGuiApplication>
#include <QJSValue>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQmlComponent>
#include <QQmlEngine>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

QByteArray contents(const char* path)
{
    QFile file(QString::fromLocal8Bit(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QColor colorOf(const QJsonObject& entry)
{
    QColor color(entry[QLatin1String("color")].toString());
    color.setAlpha(static_cast<int>(std::lround(entry[QLatin1String("alpha")].toDouble(1) * 255)));
    return color;
}

class Tokens : public testing::Test {
protected:
    void SetUp() override
    {
        QByteArray source = contents(LAMINA_TOKENS_QML);
        QQmlComponent component(&m_engine);
        component.setData(source.replace("pragma Singleton", ""), {});
        m_tokens.reset(component.create());
        ASSERT_TRUE(m_tokens) << qPrintable(component.errorString());
    }

    void compareGroup(const QJsonObject& wanted, QObject& got)
    {
        for (auto entry = wanted.begin(); entry != wanted.end(); ++entry) {
            if (entry.key() == QLatin1String("note") || entry.key() == QLatin1String("alpha"))
                continue;
            SCOPED_TRACE(qPrintable(entry.key()));
            QString name = entry.key();
            if (name.size() > 2 && name.startsWith(QLatin1String("on")) && name[2].isUpper())
                name.replace(0, 2, QStringLiteral("over"));
            const QVariant value = got.property(qPrintable(name));
            ASSERT_TRUE(value.isValid());
            ++m_compared;
            if (name == QLatin1String("color"))
                EXPECT_EQ(value.value<QColor>(), colorOf(wanted));
            else
                compareValue(entry.value(), value);
        }
    }

    void compareValue(const QJsonValue& wanted, const QVariant& got)
    {
        if (wanted.isArray()) {
            EXPECT_EQ(QJsonArray::fromVariantList(got.value<QJSValue>().toVariant().toList()), wanted.toArray());
        } else if (wanted.isObject()) {
            const QJsonObject group = wanted.toObject();
            if (got.typeId() == QMetaType::QColor)
                EXPECT_EQ(got.value<QColor>(), colorOf(group));
            else if (auto* const object = got.value<QObject*>())
                compareGroup(group, *object);
            else
                ADD_FAILURE() << "neither a colour nor a group";
        } else if (wanted.isDouble()) {
            EXPECT_EQ(got.toDouble(), wanted.toDouble());
        } else if (wanted.toString().startsWith(QLatin1Char('#'))) {
            EXPECT_EQ(got.typeId(), QMetaType::QColor);
            EXPECT_EQ(got.value<QColor>(), QColor(wanted.toString()));
        } else {
            EXPECT_EQ(got.toString(), wanted.toString());
        }
    }

    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_tokens;
    int m_compared = 0;
};

TEST_F(Tokens, EveryNumberOfTheLookReachesTheScreens)
{
    const QJsonObject look = QJsonDocument::fromJson(contents(LAMINA_TOKENS_JSON)).object();
    compareGroup(look, *m_tokens);
    EXPECT_GT(m_compared, 150);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
