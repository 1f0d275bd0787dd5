#include "platform/host/system/FolderModel.h"

#include "platform/base/Localization.h"
#include "platform/base/Result.h"
#include "platform/host/system/BackgroundWork.h"
#include "platform/photos/PictureFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <string>
#include <utility>

namespace lamina {

namespace {

struct Place {
    std::string name;
    std::string path;
};

std::vector<Place> findPlaces(const std::string& samples)
{
    std::vector<Place> places = {{localizedString("Pictures"), picturesFolder()},
                                 {localizedString("Home"), QDir::homePath().toStdString()}};
    if (!samples.empty())
        places.push_back({localizedString("Samples"), samples});
    return places;
}

std::string startFolder()
{
    std::string samples = samplesForBeginners();
    if (!samples.empty())
        return samples;
    const std::string pictures = picturesFolder();
    return QFileInfo(QString::fromStdString(pictures)).isDir() ? pictures : QDir::homePath().toStdString();
}

QVariantList asVariants(const std::vector<Place>& places)
{
    QVariantList list;
    for (const Place& place : places)
        list.append(QVariantMap{{QStringLiteral("name"), QString::fromStdString(place.name)},
                                {QStringLiteral("path"), QString::fromStdString(place.path)}});
    return list;
}

QString noteOn(const FolderContents& contents)
{
    if (contents.leftOut == 0)
        return {};
    const QLocale locale;
    const auto number = [&](std::size_t count) {
        return locale.toString(static_cast<qulonglong>(count)).toStdString();
    };
    return QString::fromStdString(
        localizedText("Only the first %1 of %2 are shown.",
                      {number(contents.entries.size()), number(contents.entries.size() + contents.leftOut)}));
}

} // namespace

/// What the background finds out for one listing.
struct FolderModel::Listing {
    std::shared_ptr<std::atomic<bool>> cancelled; ///< tells which one it is
    std::string folder;
    Result<FolderContents> contents = FolderContents();
    std::vector<Place> places;
};

FolderModel::FolderModel(QObject* parent)
    : ListModel({{"name", &FolderEntry::name},
                 {"path", &FolderEntry::path},
                 {"isFolder", &FolderEntry::isFolder},
                 {"isParent", &FolderEntry::isParent}},
                parent)
{
}

FolderModel::~FolderModel()
{
    if (!isLoading())
        return;
    stop();
    folderQueue().sync([] {});
}

void FolderModel::setFolder(const QString& folder)
{
    if (folder.isEmpty())
        return;
    const QString absolute = QDir::cleanPath(QDir().absoluteFilePath(folder));
    if (absolute == m_folder) {
        refresh();
        return;
    }
    m_folder = absolute;
    clear();
    list(false);
    emit folderChanged();
    emit titleChanged();
}

QString FolderModel::parentFolder() const
{
    return m_folder.isEmpty() || m_folder == QLatin1String("/") ? QString() : QFileInfo(m_folder).path();
}

QString FolderModel::title() const
{
    for (const QVariant& place : m_places) {
        const QVariantMap map = place.toMap();
        if (map.value(QStringLiteral("path")).toString() == m_folder)
            return map.value(QStringLiteral("name")).toString();
    }
    const QString name = QFileInfo(m_folder).fileName();
    return name.isEmpty() ? m_folder : name;
}

void FolderModel::setOrder(Order order)
{
    if (m_order == order)
        return;
    m_order = order;
    emit orderChanged();
    refresh();
}

void FolderModel::setKind(FolderFiles kind)
{
    if (std::exchange(m_kind, kind) == kind)
        return;
    clear();
    emit kindChanged();
}

int FolderModel::rowForTyping(const QString& text, int current)
{
    return m_typeAhead.rowForTyping(text, current, count(), [this](int row) {
        const FolderEntry& entry = rows()[static_cast<std::size_t>(row)];
        // The way up has no name of its own.
        return entry.isParent ? QString() : QString::fromStdString(entry.name);
    });
}

void FolderModel::openStart()
{
    clear();
    list(true);
}

void FolderModel::openAt(const std::string& folder)
{
    if (!folder.empty())
        setFolder(QString::fromStdString(folder));
    else if (m_folder.isEmpty())
        openStart();
    else
        refresh();
}

void FolderModel::refresh()
{
    if (!m_folder.isEmpty())
        list(false);
}

/// The way up goes first.
void FolderModel::resetTo(std::vector<FolderEntry> entries)
{
    if (hasParent())
        entries.insert(entries.begin(), {localizedString("Up one folder"), parentFolder().toStdString(), true, true});
    reset(std::move(entries));
}

void FolderModel::clear()
{
    resetTo({});
    m_error.clear();
    m_note.clear();
}

void FolderModel::stop()
{
    if (const auto cancelled = std::exchange(m_cancelled, nullptr))
        *cancelled = true;
}

void FolderModel::list(bool start)
{
    stop();
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    const FolderOrder order = m_order == ByName ? FolderOrder::ByName : FolderOrder::NewestFirst;
    inBackground<Listing>(
        folderQueue(), this,
        [cancelled = m_cancelled, start, folder = m_folder.toStdString(), order, kind = m_kind, limit = m_limit] {
            Listing listing{cancelled, folder, FolderContents(), {}};
            if (*cancelled)
                return listing;
            if (start)
                listing.folder = startFolder();
            listing.places = findPlaces(samplesFolder());
            listing.contents = listFolder(listing.folder, order, limit, *cancelled, kind);
            return listing;
        },
        [this](Listing listing) {
            if (listing.cancelled == m_cancelled)
                show(std::move(listing));
        });
    emit stateChanged();
}

void FolderModel::show(Listing listing)
{
    const QString folder = QString::fromStdString(listing.folder);
    const bool moved = std::exchange(m_folder, folder) != folder;
    const QVariantList places = asVariants(listing.places);
    const bool placesMoved = std::exchange(m_places, places) != places;
    const Result<FolderContents>& found = listing.contents;
    m_note = found ? noteOn(*found) : QString();
    m_error = found ? QString() : QString::fromStdString(localizedString(found.error().cause));
    m_cancelled = nullptr;
    resetTo(found ? std::move(listing.contents->entries) : std::vector<FolderEntry>());
    if (placesMoved)
        emit placesChanged();
    if (moved)
        emit folderChanged();
    if (moved || placesMoved)
        emit titleChanged();
    emit stateChanged();
}

} // namespace lamina
