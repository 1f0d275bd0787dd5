#include "platform/host/KeyTable.h"

#include "platform/base/Localization.h"

#include <QCoreApplication>
#include <QKeySequence>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>

namespace lamina {

namespace {

/// How several keys are shown: side by side, or with a word between them.
enum class Show { All, First, Either, Range };

struct Command {
    const char* name;
    const char* text;
    std::span<const char* const> keys; ///< in QKeySequence's portable words
    Show show;
};

struct Group {
    const char* title;
    std::span<const Command> commands;
};

constexpr std::array kOpen{"Ctrl+O"};
constexpr std::array kPaste{"Ctrl+V", "Shift+Ins"};
constexpr std::array kSave{"Ctrl+S"};
constexpr std::array kUse{"Return", "Enter"};
// The directions in the order in which those who act on them count.
constexpr std::array kMove{"Left", "Right", "Up", "Down"};
constexpr std::array kMoveFar{"Shift+Left", "Shift+Right", "Shift+Up", "Shift+Down"};
constexpr std::array kZoom{"+", "-", "="};
// To the left, to the right.
constexpr std::array kTurn{",", "."};
constexpr std::array kDelete{"Del", "Backspace"};
constexpr std::array kMenu{"Menu", "Shift+F10"};
constexpr std::array kBringBack{"Home"};
constexpr std::array kUndo{"Ctrl+Z"};
constexpr std::array kRedo{"Ctrl+Shift+Z", "Ctrl+Y"};
constexpr std::array kRow{"Up", "Down", "Left", "Right"};
constexpr std::array kPage{"PgUp", "PgDown"};
constexpr std::array kEnds{"Home", "End"};
constexpr std::array kLetters{"A", "Z"};
constexpr std::array kMark{"X", "Ctrl+Space", "Ins"};
constexpr std::array kShutter{"Space", "Return", "Enter"};
constexpr std::array kRetake{"R"};
constexpr std::array kSpace{"Space"};
constexpr std::array kStill{"S"};
constexpr std::array kClip{"R"};
constexpr std::array kCompare{"C"};
// The one before, the one after.
constexpr std::array kLook{"Left", "Right"};
constexpr std::array kAlbums{"A", "Alt+Down"};
constexpr std::array kTab{"Tab", "Shift+Tab"};
constexpr std::array kBack{"Esc", "Back"};
constexpr std::array kTools{"1", "2", "3", "4", "5"};
constexpr std::array kCollageTools{"Alt+1", "Alt+2", "Alt+3", "Alt+4", "Alt+5", "Alt+6", "Alt+7"};
constexpr std::array kSlots{"1", "2", "3"};
// With the one before, with the one after.
constexpr std::array kSwap{"Ctrl+Shift+Left", "Ctrl+Shift+Right"};
constexpr std::array kFullScreen{"F11"};
constexpr std::array kKeys{"F1", "Ctrl+?"};
constexpr std::array kClose{"Ctrl+W"};
constexpr std::array kQuit{"Ctrl+Q"};

constexpr std::array kPhotoCommands{
    Command{"open", QT_TRANSLATE_NOOP("Lamina", "Open a photo"), kOpen, Show::First},
    Command{"paste", QT_TRANSLATE_NOOP("Lamina", "Paste"), kPaste, Show::First},
    Command{"use", QT_TRANSLATE_NOOP("Lamina", "Use the photo"), kUse, Show::First},
    Command{"save", QT_TRANSLATE_NOOP("Lamina", "Save"), kSave, Show::First},
};
constexpr std::array kCanvasCommands{
    Command{"move", QT_TRANSLATE_NOOP("Lamina", "Move the photo"), kMove, Show::All},
    Command{"moveFar", QT_TRANSLATE_NOOP("Lamina", "Move it further"), kMoveFar, Show::First},
    Command{"zoom", QT_TRANSLATE_NOOP("Lamina", "Zoom"), kZoom, Show::All},
    Command{"turn", QT_TRANSLATE_NOOP("Lamina", "Turn a sticker or the photo"), kTurn, Show::All},
    Command{"deleteSticker", QT_TRANSLATE_NOOP("Lamina", "Remove a sticker"), kDelete, Show::First},
    Command{"photoMenu", QT_TRANSLATE_NOOP("Lamina", "Menu of a photo"), kMenu, Show::Either},
    Command{"slot", QT_TRANSLATE_NOOP("Lamina", "Photo of a collage"), kSlots, Show::Range},
    Command{"swapPhotos", QT_TRANSLATE_NOOP("Lamina", "Swap it with its neighbour"), kSwap, Show::First},
    Command{"bringBack", QT_TRANSLATE_NOOP("Lamina", "Bring the photo back"), kBringBack, Show::First},
    Command{"undo", QT_TRANSLATE_NOOP("Lamina", "Undo"), kUndo, Show::First},
    Command{"redo", QT_TRANSLATE_NOOP("Lamina", "Redo"), kRedo, Show::Either},
};
constexpr std::array kListCommands{
    Command{"row", QT_TRANSLATE_NOOP("Lamina", "Another row or answer"), kRow, Show::All},
    Command{"page", QT_TRANSLATE_NOOP("Lamina", "A page up or down"), kPage, Show::All},
    Command{"ends", QT_TRANSLATE_NOOP("Lamina", "First and last"), kEnds, Show::All},
    Command{"letters", QT_TRANSLATE_NOOP("Lamina", "Jump to a name"), kLetters, Show::Range},
};
constexpr std::array kPickerCommands{
    Command{"mark", QT_TRANSLATE_NOOP("Lamina", "Choose a photo or leave it"), kMark, Show::First},
    Command{"preview", QT_TRANSLATE_NOOP("Lamina", "Look at a photo"), kSpace, Show::First},
    Command{"albums", QT_TRANSLATE_NOOP("Lamina", "Albums"), kAlbums, Show::First},
};
constexpr std::array kCameraCommands{
    Command{"shutter", QT_TRANSLATE_NOOP("Lamina", "Take a photo"), kShutter, Show::First},
    Command{"retake", QT_TRANSLATE_NOOP("Lamina", "Take it again"), kRetake, Show::First},
};
constexpr std::array kLiveCommands{
    Command{"pausePicture", QT_TRANSLATE_NOOP("Lamina", "Pause or go on"), kSpace, Show::First},
    Command{"still", QT_TRANSLATE_NOOP("Lamina", "Save a still"), kStill, Show::First},
    Command{"clip", QT_TRANSLATE_NOOP("Lamina", "Begin or end a clip"), kClip, Show::First},
    Command{"compare", QT_TRANSLATE_NOOP("Lamina", "Compare with before"), kCompare, Show::First},
    Command{"look", QT_TRANSLATE_NOOP("Lamina", "Another filter"), kLook, Show::All},
};
constexpr std::array kWindowCommands{
    Command{"tab", QT_TRANSLATE_NOOP("Lamina", "Next control"), kTab, Show::First},
    Command{"back", QT_TRANSLATE_NOOP("Lamina", "One step back"), kBack, Show::First},
    Command{"tool", QT_TRANSLATE_NOOP("Lamina", "Choose a tool"), kTools, Show::Range},
    Command{"collageTool", QT_TRANSLATE_NOOP("Lamina", "Choose a tool of a collage"), kCollageTools, Show::Range},
    Command{"fullScreen", QT_TRANSLATE_NOOP("Lamina", "Full screen"), kFullScreen, Show::First},
    Command{"keys", QT_TRANSLATE_NOOP("Lamina", "This list"), kKeys, Show::Either},
    Command{"close", QT_TRANSLATE_NOOP("Lamina", "Close the window"), kClose, Show::First},
    Command{"quit", QT_TRANSLATE_NOOP("Lamina", "Quit"), kQuit, Show::First},
};
constexpr std::array kGroups{
    Group{QT_TRANSLATE_NOOP("Lamina", "Photos"), kPhotoCommands},
    Group{QT_TRANSLATE_NOOP("Lamina", "Canvas"), kCanvasCommands},
    Group{QT_TRANSLATE_NOOP("Lamina", "Lists"), kListCommands},
    Group{QT_TRANSLATE_NOOP("Lamina", "Choosing photos"), kPickerCommands},
    Group{QT_TRANSLATE_NOOP("Lamina", "Camera"), kCameraCommands},
    Group{QT_TRANSLATE_NOOP("Lamina", "Live pictures"), kLiveCommands},
    Group{QT_TRANSLATE_NOOP("Lamina", "Windows"), kWindowCommands},
};

/// What stands on a cap, where it is not QKeySequence's own word.
struct Cap {
    std::string_view key;
    const char* text;
};
constexpr std::array kCaps{
    Cap{"Ctrl", QT_TRANSLATE_NOOP("Lamina", "Ctrl")},
    Cap{"Shift", QT_TRANSLATE_NOOP("Lamina", "Shift")},
    Cap{"Return", QT_TRANSLATE_NOOP("Lamina", "Enter")},
    Cap{"Space", QT_TRANSLATE_NOOP("Lamina", "Space")},
    Cap{"Del", QT_TRANSLATE_NOOP("Lamina", "Delete")},
    Cap{"Menu", QT_TRANSLATE_NOOP("Lamina", "Menu")},
    Cap{"Home", QT_TRANSLATE_NOOP("Lamina", "Home key")},
    Cap{"End", QT_TRANSLATE_NOOP("Lamina", "End")},
    Cap{"PgUp", QT_TRANSLATE_NOOP("Lamina", "PgUp")},
    Cap{"PgDown", QT_TRANSLATE_NOOP("Lamina", "PgDn")},
    Cap{"Left", "←"},
    Cap{"Right", "→"},
    Cap{"Up", "↑"},
    Cap{"Down", "↓"},
    Cap{"-", "−"},
};

const Command* commandNamed(const QString& name)
{
    for (const Group& group : kGroups)
        for (const Command& command : group.commands)
            if (name == QLatin1String(command.name))
                return &command;
    return nullptr;
}

QString translated(const char* text)
{
    return QString::fromStdString(localizedString(text));
}

QString capText(const QString& key)
{
    const std::string name = key.toStdString();
    const auto* const found = std::ranges::find(kCaps, name, &Cap::key);
    return found == kCaps.end() ? key : translated(found->text);
}

/// "Ctrl+?" in its parts; a plus alone is a key.
QStringList capTexts(const char* keys)
{
    const QString text = QString::fromLatin1(keys);
    QStringList parts = text.size() == 1 ? QStringList{text} : text.split(QLatin1Char('+'));
    std::ranges::transform(parts, parts.begin(), capText);
    return parts;
}

void append(QVariantList& caps, const QString& text, bool cap)
{
    caps.append(QVariantMap{{QStringLiteral("text"), text}, {QStringLiteral("cap"), cap}});
}

/// The keys that are shown; alternatives that only other keyboards have are not.
std::span<const char* const> shownKeys(const Command& command)
{
    switch (command.show) {
    case Show::First:
        return command.keys.first(1);
    case Show::All:
        // They come in pairs; an odd last one is plus once more, as it lies without Shift.
        return command.keys.first(command.keys.size() / 2 * 2);
    case Show::Either:
    case Show::Range:
        break;
    }
    return command.keys;
}

/// Signs that are reached with Shift on one keyboard and without on another.
bool isSign(int key)
{
    return key > Qt::Key_Space && key < Qt::Key_AsciiTilde && (key < Qt::Key_A || key > Qt::Key_Z);
}

} // namespace

KeyTable::KeyTable(QObject* parent)
    : QObject(parent)
{
}

QStringList KeyTable::commands()
{
    QStringList names;
    for (const Group& group : kGroups)
        for (const Command& command : group.commands)
            names.append(QLatin1String(command.name));
    return names;
}

QVariantList KeyTable::groups() const
{
    QVariantList list;
    for (const Group& group : kGroups) {
        QVariantList rows;
        for (const Command& command : group.commands) {
            const QString name = QString::fromLatin1(command.name);
            rows.append(QVariantMap{{QStringLiteral("command"), name},
                                    {QStringLiteral("text"), translated(command.text)},
                                    {QStringLiteral("caps"), caps(name)}});
        }
        list.append(QVariantMap{{QStringLiteral("title"), translated(group.title)}, {QStringLiteral("rows"), rows}});
    }
    return list;
}

QStringList KeyTable::sequences(const QString& command) const
{
    QStringList list;
    if (const Command* const found = commandNamed(command))
        for (const char* const keys : found->keys)
            list.append(QString::fromLatin1(keys));
    return list;
}

int KeyTable::find(const QString& command, int key, int modifiers) const
{
    Qt::KeyboardModifiers held = Qt::KeyboardModifiers::fromInt(modifiers) & ~Qt::KeypadModifier;
    if (isSign(key))
        held &= ~Qt::ShiftModifier;
    const QStringList keys = sequences(command);
    const QKeySequence pressed(QKeyCombination(held, static_cast<Qt::Key>(key)));
    for (qsizetype i = 0; i < keys.size(); ++i)
        if (QKeySequence(keys[i]) == pressed)
            return static_cast<int>(i);
    return -1;
}

QVariantList KeyTable::caps(const QString& command) const
{
    QVariantList list;
    const Command* const found = commandNamed(command);
    if (!found)
        return list;
    const auto keys = shownKeys(*found);
    for (const char* const key : keys) {
        const bool last = key == keys.back();
        if (found->show == Show::Range && key != keys.front() && !last)
            continue;
        if (key != keys.front() && found->show == Show::Either)
            append(list, translated(QT_TRANSLATE_NOOP("Lamina", "or")), false);
        if (last && found->show == Show::Range)
            append(list, translated(QT_TRANSLATE_NOOP("Lamina", "to")), false);
        for (const QString& text : capTexts(key))
            append(list, text, true);
    }
    return list;
}

QString KeyTable::words(const QString& command) const
{
    const Command* const found = commandNamed(command);
    return found ? capTexts(found->keys.front()).join(QLatin1Char('+')) : QString();
}

} // namespace lamina
