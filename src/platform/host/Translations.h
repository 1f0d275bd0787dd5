#pragma once

#include <QTranslator>

namespace lamina {

/// Installs the user's language for the application and for `localizedString`: lamina_XX.qm from the installed folder
/// of translations or, in a build tree, from `LAMINA_TRANSLATIONS`. Lives as long as the application.
class Translations {
public:
    Translations();
    ~Translations();
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

private:
    void load();

    QTranslator m_translator;
};

} // namespace lamina
