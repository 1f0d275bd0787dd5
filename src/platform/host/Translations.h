#pragma once

#include <QTranslator>

namespace lamina {

/// Installs the user's language for the application and for `localizedString`: lamina_XX.qm from
/// `LAMINA_TRANSLATIONS` or else from the installed folder of translations. Below it lies lamina_en.qm, which has the
/// English of the texts that are no English themselves ("fx"), whatever the language. Lives as long as the application.
class Translations {
public:
    Translations();
    ~Translations();
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

private:
    QTranslator m_english;
    QTranslator m_language;
};

} // namespace lamina
