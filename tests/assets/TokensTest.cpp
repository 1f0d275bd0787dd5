// The look's numbers, from the designers' file to what QML sees. The file is read from its source, as by an engine that
// can't use what was compiled.
#include <QColor>
#include <QFile>
#include <QGuiApplication>
#include <QJSValue>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

QByteArray contents(const char* path)
{
    QFile file(QString::fromLocal8Bit(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What QML should see: colours with their alpha as "#aarrggbb", no notes, and no name that would be a signal's
/// handler.
QJsonValue expected(const QJsonValue& token)
{
    if (token.toString().startsWith(QLatin1Char('#')))
        return QColor(token.toString()).name(QColor::HexArgb);
    if (!token.isObject())
        return token;
    QJsonObject group = token.toObject();
    group.remove(QLatin1String("note"));
    if (group.contains(QLatin1String("color")) && group.contains(QLatin1String("alpha"))) {
        QColor color(group[QLatin1String("color")].toString());
        color.setAlpha(static_cast<int>(std::lround(group.take(QLatin1String("alpha")).toDouble() * 255)));
        group[QLatin1String("color")] = color.name(QColor::HexArgb);
    }
    if (group.size() == 1 && group.contains(QLatin1String("color")))
        return expected(group[QLatin1String("color")]);
    static const QRegularExpression handler(QStringLiteral("^on(?=[A-Z])"));
    QJsonObject result;
    for (auto entry = group.begin(); entry != group.end(); ++entry)
        result[entry.key().replace(handler, QStringLiteral("over"))] = expected(entry.value());
    return result;
}

QJsonValue seen(const QVariant& value)
{
    if (value.typeId() == QMetaType::QColor)
        return value.value<QColor>().name(QColor::HexArgb);
    if (value.canConvert<QJSValue>())
        return QJsonArray::fromVariantList(value.value<QJSValue>().toVariant().toList());
    auto* const object = value.value<QObject*>();
    if (!object)
        return value.toJsonValue();
    QJsonObject result;
    const QMetaObject& meta = *object->metaObject();
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        result[QLatin1String(meta.property(i).name())] = seen(meta.property(i).read(object));
    return result;
}

TEST(Tokens, EveryNumberOfTheLookReachesTheScreens)
{
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(contents(LAMINA_TOKENS_QML).replace("pragma Singleton", ""), {});
    const std::unique_ptr<QObject> tokens(component.create());
    ASSERT_TRUE(tokens) << qPrintable(component.errorString());
    const QJsonObject look = expected(QJsonDocument::fromJson(contents(LAMINA_TOKENS_JSON)).object()).toObject();
    EXPECT_GT(look.size(), 5);
    const QJsonObject got = seen(QVariant::fromValue(tokens.get())).toObject();
    EXPECT_EQ(QJsonDocument(got).toJson().toStdString(), QJsonDocument(look).toJson().toStdString());
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
