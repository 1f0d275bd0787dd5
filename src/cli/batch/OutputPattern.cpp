#include "cli/batch/OutputPattern.h"

#include "cli/common/Messages.h"

#include <filesystem>

namespace lamina {

OutputPattern::Part OutputPattern::partNamed(std::string_view word)
{
    return word == "{name}"        ? Part::Name
           : word == "{extension}" ? Part::Extension
           : word == "{number}"    ? Part::Number
                                   : Part::Text;
}

Result<OutputPattern> OutputPattern::parse(const std::string& text)
{
    OutputPattern pattern;
    const std::size_t folder = text.rfind('/');
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t open = text.find('{', at);
        const std::size_t close = text.find('}', open);
        if (close == std::string::npos) {
            pattern.m_pieces.push_back({Part::Text, text.substr(at)});
            break;
        }
        pattern.m_pieces.push_back({Part::Text, text.substr(at, open - at)});
        const std::string word = text.substr(open, close + 1 - open);
        const Part part = partNamed(word);
        if (part == Part::Text)
            return Error{text, "there is no '" + beginning(word) + "'; there are {name}, {extension} and {number}"};
        if (folder != std::string::npos && open < folder)
            return Error{text, "all files go into one folder: " + word + " may stand in the name of the file alone"};
        pattern.m_pieces.push_back({part, {}});
        pattern.m_tellsApart |= part != Part::Extension;
        at = close + 1;
    }
    return pattern;
}

std::string OutputPattern::nameFor(const std::string& input, std::size_t place, std::size_t count) const
{
    const std::filesystem::path path(input);
    std::string name;
    for (const Piece& piece : m_pieces) {
        const std::string extension = path.extension().string();
        const std::string number = std::to_string(place + 1);
        switch (piece.part) {
        case Part::Text:
            name += piece.text;
            break;
        case Part::Name:
            name += path.stem().string();
            break;
        case Part::Extension:
            name += extension.empty() ? extension : extension.substr(1);
            break;
        case Part::Number:
            name += std::string(std::to_string(count).size() - number.size(), '0') + number;
            break;
        }
    }
    return name;
}

} // namespace lamina
