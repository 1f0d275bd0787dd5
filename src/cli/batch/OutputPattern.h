#pragma once

#include "platform/base/Result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// The name of a file to write for each of many, as in "small/{name}.jpg". The last part of the path may hold "{name}",
/// the file that is read without its folder and its extension, "{extension}", that without its full stop, and
/// "{number}", its place in the whole list from 1 on, with as many digits as the last one's.
class OutputPattern {
public:
    /// Fails for another word in braces, and for any in the folder. The error's subject is the text.
    static Result<OutputPattern> parse(const std::string& text);

    /// Whether files of different names or places get different names at all.
    bool tellsFilesApart() const { return m_tellsApart; }
    /// What the file `input` becomes, the one at `place` (from 0) of `count`.
    std::string nameFor(const std::string& input, std::size_t place, std::size_t count) const;

private:
    enum class Part { Text, Name, Extension, Number };
    struct Piece {
        Part part = Part::Text;
        std::string text; ///< as it stands; of `Text` alone
    };

    static Part partNamed(std::string_view word);

    std::vector<Piece> m_pieces;
    bool m_tellsApart = false;
};

} // namespace lamina
