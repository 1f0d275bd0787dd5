#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

/// Stands in for the desktop's portals on the session bus: records what its dialogs are asked and answers as told, and
/// keeps settings. Lives in the thread that makes it and answers when that thread's event loop runs.
class TestPortal : public QDBusVirtualObject {
public:
    /// How a dialog takes a question.
    enum class Manner {
        Asks,         ///< gives the handle that was asked for, and waits for `respond`
        NamesItself,  ///< the same with a handle of its own choosing, as old portals
        AnswersFirst, ///< responds as `setAnswer` says, and gives the handle afterwards
        Refuses,      ///< gives an error
        Hesitates,    ///< gives no handle until `giveHandle`
    };
    struct Filter {
        std::string name;
        std::vector<std::pair<unsigned, std::string>> rules;
        bool operator==(const Filter&) const = default;
    };
    struct Question {
        QString call; ///< "FileChooser.OpenFile"
        QString parentWindow;
        QString title;
        QByteArray file;     ///< contents of the one that is handed over
        QVariantMap options; ///< all but the filters and what is handed over
        std::vector<Filter> filters;
        QString handle; ///< of the request
        QString sender;
    };

    /// Takes the portals' name on the bus of the address, or the session's. See `isRunning`.
    explicit TestPortal(const QString& address = {});
    ~TestPortal() override;

    bool isRunning() const { return m_running; }
    /// Leaves the bus, as a program that has crashed.
    void vanish();

    void setManner(Manner manner) { m_manner = manner; }
    /// From now on every question is answered at once (with manner `Asks`, after the handle).
    void setAnswer(unsigned code, const QVariantMap& results) { m_answer = {code, results}; }
    void setChoice(const QStringList& uris) { setAnswer(0, {{QStringLiteral("uris"), uris}}); }

    /// Knows cameras from now on: whether there is one, which it tells all who listen, and what it hands out as the
    /// connection to them, a descriptor of the caller's; -1: an error.
    void setCamera(bool present, int remote = -1);
    int remotesOpened() const { return m_remotesOpened; }

    /// Serves the file manager as well, on the same bus.
    void serveFileManager();
    /// What that was to show.
    const QStringList& shownItems() const { return m_shownItems; }

    const std::vector<Question>& questions() const { return m_questions; }
    /// Handles for which Close was called.
    const QStringList& closed() const { return m_closed; }

    /// Answers the last question.
    void respond(unsigned code, const QVariantMap& results = {}) { respondWith({code, results}); }
    void choose(const QStringList& uris) { respond(0, {{QStringLiteral("uris"), uris}}); }
    /// The same with any arguments.
    void respondWith(const QVariantList& arguments);
    /// Ends the hesitation over the last question.
    void giveHandle();

    /// Stores a setting and tells all who listen.
    void setSetting(const QString& group, const QString& key, const QVariant& value);
    int settingsReads() const { return m_settingsReads; }

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void ask(const QString& name, const QDBusMessage& call);
    void readAll(const QDBusMessage& call);
    void tellPresence(const QDBusMessage& call);
    void openRemote(const QDBusMessage& call);

    QString m_connectionName;
    QDBusConnection m_bus;
    bool m_running = false;
    Manner m_manner = Manner::Asks;
    std::optional<std::pair<unsigned, QVariantMap>> m_answer;
    std::vector<Question> m_questions;
    QDBusMessage m_lastCall;
    QStringList m_closed;
    QStringList m_shownItems;
    std::optional<bool> m_cameraPresent;
    int m_remote = -1;
    int m_remotesOpened = 0;
    QMap<QString, QVariantMap> m_settings;
    int m_settingsReads = 0;
};

} // namespace lamina::test
