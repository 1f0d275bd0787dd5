#include "platform/host/services/NotificationTexts.h"

#include "platform/base/ShownText.h"

#include <string>

namespace lamina {

QString notificationText(std::string_view text, std::size_t characters, bool lines)
{
    std::string shown;
    std::size_t beforeLast = 0; // where the last character of a full text begins
    for (std::size_t count = 0; !text.empty(); ++count) {
        if (count == characters)
            return QString::fromStdString(shown.substr(0, beforeLast) + "…");
        beforeLast = shown.size();
        const FirstSign first = firstSign(text);
        if (text.front() == '\n')
            shown += lines ? '\n' : ' ';
        else
            shown += first.isShown ? text.substr(0, first.length) : kReplacementSign;
        text.remove_prefix(first.length);
    }
    return QString::fromStdString(shown);
}

} // namespace lamina
