#include "SamplePhotos.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace lamina::test {

std::vector<std::string> addSamplePhotos(const std::string& folder, int count, int minutesOld)
{
    constexpr int kSecondsPerMinute = 60;
    const QDir target(QString::fromStdString(folder));
    const QDir source(QStringLiteral(LAMINA_SAMPLES));
    const QStringList names = source.entryList({QStringLiteral("*.jpg")}, QDir::Files, QDir::Name);
    target.mkpath(QStringLiteral("."));
    const QDateTime newest = QDateTime::currentDateTime().addSecs(-kSecondsPerMinute * minutesOld);
    std::vector<std::string> paths;
    for (int i = 0; i < count; ++i) {
        const QString& name = names[i % names.size()];
        const QString path = target.filePath(QStringLiteral("%1-%2").arg(i + 1, 2, 10, QLatin1Char('0')).arg(name));
        QFile::copy(source.filePath(name), path);
        QFile file(path);
        file.open(QIODevice::ReadWrite);
        file.setFileTime(newest.addSecs(-kSecondsPerMinute * i), QFileDevice::FileModificationTime);
        paths.push_back(path.toStdString());
    }
    return paths;
}

} // namespace lamina::test
