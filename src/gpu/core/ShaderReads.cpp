#include "gpu/core/ShaderReads.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace lamina {

namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kWordCharacters = "_abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

/// Where the comment that begins the text ends; 0 where there is none.
std::size_t commentLength(std::string_view text)
{
    const bool line = text.starts_with("//");
    if (!line && !text.starts_with("/*"))
        return 0;
    const std::size_t end = line ? text.find('\n') : text.find("*/", 2);
    return end == std::string_view::npos ? text.size() : end + (line ? 1 : 2);
}

/// The words and single characters of a shader, without comments.
class Tokens {
public:
    explicit Tokens(std::string_view text)
    {
        while (!text.empty()) {
            std::size_t length = commentLength(text);
            if (length == 0) {
                length = std::clamp<std::size_t>(text.find_first_not_of(kWordCharacters), 1, text.size());
                if (std::string_view(" \t\r\n").find(text.front()) == std::string_view::npos)
                    m_tokens.push_back(text.substr(0, length));
            }
            text.remove_prefix(length);
        }
    }

    std::size_t size() const { return m_tokens.size(); }
    std::string_view at(std::size_t index) const { return index < size() ? m_tokens[index] : std::string_view(); }
    /// Whether these follow one another from `index` on.
    bool areAt(std::size_t index, std::initializer_list<std::string_view> words) const
    {
        return std::ranges::all_of(words, [&](std::string_view word) { return at(index++) == word; });
    }
    /// How often these follow one another.
    int count(std::initializer_list<std::string_view> words) const
    {
        int found = 0;
        for (std::size_t i = 0; i < size(); ++i)
            found += areAt(i, words) ? 1 : 0;
        return found;
    }

private:
    std::vector<std::string_view> m_tokens;
};

/// "" or the number at the end of a slot's names.
std::string_view numberOf(std::string_view name)
{
    return name.substr(name.find_last_not_of(kDigits) + 1);
}

/// A varying that no function of the shader hides behind a name of its own.
bool isVarying(const Tokens& fragment, std::string_view name)
{
    int declarations = fragment.count({"varying", "vec2", name});
    for (const std::string_view precision : {"lowp", "mediump", "highp"})
        declarations += fragment.count({"varying", precision, "vec2", name});
    return declarations == 1 && fragment.count({"vec2", name}) == 1 && fragment.count({name, "="}) == 0;
}

/// The varyings at which the sampler is read, where it is read at nothing else.
std::optional<std::set<std::string_view>> varyingsReadAt(const Tokens& fragment, std::string_view sampler)
{
    std::set<std::string_view> places;
    if (fragment.count({"define"}) > 0)
        return std::nullopt;
    for (std::size_t i = 0; i < fragment.size(); ++i) {
        if (fragment.at(i) != sampler || (i > 0 && fragment.at(i - 1) == "sampler2D"))
            continue;
        const std::string_view place = fragment.at(i + 2);
        const bool isRead = i >= 2 && fragment.areAt(i - 2, {"texture2D", "(", sampler, ",", place, ")"});
        if (!isRead || !isVarying(fragment, place) || numberOf(place) != numberOf(sampler))
            return std::nullopt;
        places.insert(place);
    }
    return places;
}

/// Whether the vertex shader leaves the quad where it is and passes the coordinate on as it is.
bool passesOn(const Tokens& vertex, std::string_view attribute, std::string_view varying)
{
    return vertex.count({"define"}) == 0 && vertex.count({"gl_Position"}) == 1 &&
           vertex.count({"gl_Position", "=", "position", ";"}) == 1 && vertex.count({varying}) == 2 &&
           vertex.count({varying, "=", attribute, ".", "xy", ";"}) == 1;
}

} // namespace

ShaderReads shaderReads(std::string_view vertexShader, std::string_view fragmentShader, std::size_t slot)
{
    const std::string number = slot == 0 ? "" : std::to_string(slot + 1);
    const std::string sampler = "inputImageTexture" + number;
    const std::string own = "textureCoordinate" + number;
    if (fragmentShader.find(sampler) == std::string_view::npos)
        return ShaderReads::InPlace;
    const Tokens fragment(fragmentShader);
    const auto places = varyingsReadAt(fragment, sampler);
    if (!places)
        return ShaderReads::Anywhere;
    const bool onlyOwn = std::ranges::all_of(*places, [&](std::string_view place) { return place == own; });
    return onlyOwn && passesOn(Tokens(vertexShader), "inputTextureCoordinate" + number, own) ? ShaderReads::InPlace
                                                                                             : ShaderReads::AtVaryings;
}

} // namespace lamina
