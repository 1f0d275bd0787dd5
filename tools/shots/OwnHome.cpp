#include "OwnHome.h"

#include <initializer_list>

namespace lamina::test {

OwnHome::OwnHome()
{
    qputenv("HOME", m_folder.path().toUtf8());
    qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8());
    for (const char* const folder : {"CACHE", "CONFIG", "DATA", "STATE"})
        qputenv(QByteArray("XDG_") + folder + "_HOME",
                m_folder.filePath(QString::fromLatin1(folder).toLower()).toUtf8());
    qputenv("LAMINA_TRANSLATIONS", LAMINA_BUILT_TRANSLATIONS);
}

} // namespace lamina::test
