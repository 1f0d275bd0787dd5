#pragma once

#include "WindowDriver.h"

#include <QString>

#include <cstdio>
#include <utility>

namespace lamina::test {

/// A window whose pictures become files, `prefix` and a name each.
class Shooter {
public:
    Shooter(const LaunchOptions& options, QString prefix)
        : m_driver(options)
        , m_prefix(std::move(prefix))
    {
    }
    WindowDriver& driver() { return m_driver; }

    void shoot(const char* name)
    {
        m_driver.settle();
        const QString path = m_prefix + QLatin1String(name) + QStringLiteral(".png");
        if (!m_driver.grab().save(path))
            std::fprintf(stderr, "can't write %s\n", qPrintable(path));
        else
            std::puts(qPrintable(path));
    }

private:
    WindowDriver m_driver;
    QString m_prefix;
};

} // namespace lamina::test
