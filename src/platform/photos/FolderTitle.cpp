#include "platform/photos/FolderTitle_p.h"

#include <QString>

#include <algorithm>

namespace lamina {

namespace {

/// The run of digits at `at`, without noughts before it.
QStringView numberAt(QStringView text, qsizetype at)
{
    qsizetype end = at;
    while (end < text.size() && text[end].isDigit())
        ++end;
    while (at < end - 1 && text[at].digitValue() == 0)
        ++at;
    return text.mid(at, end - at);
}

int compareNumbers(QStringView x, QStringView y)
{
    if (x.size() != y.size())
        return x.size() < y.size() ? -1 : 1;
    for (qsizetype i = 0; i < x.size(); ++i) {
        const int difference = x[i].digitValue() - y[i].digitValue();
        if (difference != 0)
            return difference;
    }
    return 0;
}

int compareTitles(QStringView x, QStringView y)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < x.size() && j < y.size()) {
        if (x[i].isDigit() && y[j].isDigit()) {
            const QStringView first = numberAt(x, i);
            const QStringView second = numberAt(y, j);
            if (const int order = compareNumbers(first, second))
                return order;
            i = first.end() - x.begin();
            j = second.end() - y.begin();
        } else if (x[i] != y[j]) {
            return x[i] < y[j] ? -1 : 1;
        } else {
            ++i;
            ++j;
        }
    }
    return static_cast<int>((x.size() - i > 0) - (y.size() - j > 0));
}

} // namespace

std::string folderTitle(std::string_view name)
{
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).toStdString();
}

bool isTitledBefore(const std::string& x, const std::string& y)
{
    const int order = compareTitles(QString::fromStdString(x).toCaseFolded(), QString::fromStdString(y).toCaseFolded());
    return order != 0 ? order < 0 : x < y;
}

} // namespace lamina
