#pragma once

#include <QTemporaryDir>

namespace lamina::test {

/// A home folder for this process alone, gone with it: what the window reads of its user's and what it writes stays
/// apart from those of whoever runs the program. Made before the QGuiApplication.
class OwnHome {
public:
    OwnHome();

private:
    QTemporaryDir m_folder;
};

} // namespace lamina::test
