#include "platform/host/system/FileChooserOptions.h"

#include "platform/base/Localization.h"
#include "platform/image/codecs/PictureFormats.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMetaType>

namespace lamina {

namespace {

constexpr uint kGlob = 0;
constexpr uint kMimeType = 1;

/// One condition of a filter: (us).
struct FilterRule {
    uint kind = kGlob;
    QString pattern;
};

/// A choice in the dialog's list of file types: (sa(us)).
struct Filter {
    QString name;
    QList<FilterRule> rules;
};

QDBusArgument& operator<<(QDBusArgument& argument, const FilterRule& rule)
{
    argument.beginStructure();
    argument << rule.kind << rule.pattern;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, FilterRule& rule)
{
    argument.beginStructure();
    argument >> rule.kind >> rule.pattern;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const Filter& filter)
{
    argument.beginStructure();
    argument << filter.name << filter.rules;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Filter& filter)
{
    argument.beginStructure();
    argument >> filter.name >> filter.rules;
    argument.endStructure();
    return argument;
}

void registerFilterTypes()
{
    static const bool registered = [] {
        qDBusRegisterMetaType<FilterRule>();
        qDBusRegisterMetaType<QList<FilterRule>>();
        qDBusRegisterMetaType<Filter>();
        qDBusRegisterMetaType<QList<Filter>>();
        return true;
    }();
    Q_UNUSED(registered)
}

/// These, or whatever else.
QList<Filter> orAllFiles(const Filter& wanted)
{
    return {wanted, {QString::fromStdString(localizedString("All files")), {{kGlob, QStringLiteral("*")}}}};
}

QList<Filter> movieFilters()
{
    return orAllFiles({QString::fromStdString(localizedString(QT_TRANSLATE_NOOP("Lamina", "Movies"))),
                       {{kMimeType, QStringLiteral("video/*")}}});
}

QList<Filter> pictureFilters()
{
    Filter pictures{QString::fromStdString(localizedString("Pictures")), {}};
    for (const PictureFormat& format : pictureFormats())
        for (const std::string_view type : format.mimeTypes)
            pictures.rules.append({kMimeType, QString::fromUtf8(type.data(), static_cast<qsizetype>(type.size()))});
    return orAllFiles(pictures);
}

/// What both kinds of questions have.
QVariantMap commonOptions(const std::string& acceptLabel, const std::string& folder)
{
    QVariantMap options = {{QStringLiteral("modal"), true}};
    if (!acceptLabel.empty())
        options.insert(QStringLiteral("accept_label"), QString::fromStdString(acceptLabel));
    // Bytes, since a path need not be text, and with the zero at their end: so paths travel on the bus.
    if (!folder.empty())
        options.insert(QStringLiteral("current_folder"),
                       QByteArray(folder.c_str(), static_cast<qsizetype>(folder.size()) + 1));
    return options;
}

} // namespace

QVariantMap fileChooserOptions(const FileChooserQuestion& question)
{
    registerFilterTypes();
    QVariantMap options = commonOptions(question.acceptLabel, question.folder);
    options.insert(QStringLiteral("multiple"), false);
    if (question.choosesFolder)
        options.insert(QStringLiteral("directory"), true);
    else
        options.insert(QStringLiteral("filters"),
                       QVariant::fromValue(question.choosesMovie ? movieFilters() : pictureFilters()));
    return options;
}

QVariantMap fileSaveOptions(const FileSaveQuestion& question)
{
    QVariantMap options = commonOptions(question.acceptLabel, question.folder);
    options.insert(QStringLiteral("current_name"), QString::fromStdString(question.name));
    return options;
}

} // namespace lamina
