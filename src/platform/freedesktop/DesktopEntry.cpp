#include "platform/freedesktop/DesktopEntry.h"

#include <cstdlib>
#include <utility>

namespace brindle {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view takeLine(std::string_view& text) {
    const auto end = text.find('\n');
    const auto line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

char unescaped(char letter) {
    switch (letter) {
        case 's':
            return ' ';
        case 'n':
            return '\n';
        case 't':
            return '\t';
        case 'r':
            return '\r';
        default:
            return letter;
    }
}

std::string stringValue(std::string_view raw) {
    constexpr std::string_view known = "sntr\\";
    std::string value;
    value.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const bool isEscape = raw[i] == '\\' && i + 1 < raw.size() && known.find(raw[i + 1]) != known.npos;
        value += isEscape ? unescaped(raw[++i]) : raw[i];
    }
    return value;
}

/// The parts of lang_COUNTRY.ENCODING@MODIFIER; the encoding does not count.
struct Locale {
    std::string_view language;
    std::string_view country;
    std::string_view modifier;

    explicit Locale(std::string_view text) {
        if (const auto at = text.find('@'); at != text.npos) {
            modifier = text.substr(at + 1);
            text = text.substr(0, at);
        }
        text = text.substr(0, text.find('.'));
        if (const auto underscore = text.find('_'); underscore != text.npos) {
            country = text.substr(underscore + 1);
            text = text.substr(0, underscore);
        }
        language = text;
    }

    /// How well a key's locale suits this one: the country weighs more than the modifier, and what the key asks for
    /// must be there. 0: not at all.
    [[nodiscard]] int matchOf(std::string_view keyLocale) const {
        const Locale key(keyLocale);
        const auto fits = [](std::string_view asked, std::string_view mine) { return asked.empty() || asked == mine; };
        if (key.language.empty() || key.language != language || !fits(key.country, country) ||
            !fits(key.modifier, modifier))
            return 0;
        return 1 + (key.modifier.empty() ? 0 : 1) + (key.country.empty() ? 0 : 2);
    }
};

class Reader {
public:
    explicit Reader(std::string_view locale) : locale_(locale) {}

    void read(std::string_view key, std::string_view value) {
        if (key == "Type")
            isApplication_ = value == "Application";
        else if (key == "Name" && nameMatch_ == 0)
            entry_.name = stringValue(value);
        else if (key.starts_with("Name[") && key.ends_with(']'))
            readName(key.substr(5, key.size() - 6), value);
        else if (key == "Exec")
            entry_.exec = stringValue(value);
        else if (key == "Icon")
            entry_.icon = stringValue(value);
        else if (key == "StartupWMClass")
            entry_.startupWmClass = stringValue(value);
        else if (key == "NoDisplay")
            entry_.isNoDisplay = value == "true";
        else if (key == "Hidden")
            entry_.isHidden = value == "true";
    }

    [[nodiscard]] std::optional<DesktopEntry> result() && {
        if (!entry_.isHidden && (!isApplication_ || entry_.name.empty()))
            return std::nullopt;
        return std::move(entry_);
    }

private:
    void readName(std::string_view keyLocale, std::string_view value) {
        const int match = locale_.matchOf(keyLocale);
        if (match <= nameMatch_)
            return;
        nameMatch_ = match;
        entry_.name = stringValue(value);
    }

    Locale locale_;
    DesktopEntry entry_;
    bool isApplication_ = false;
    int nameMatch_ = 0;
};

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale) {
    if (text.size() > desktopEntryLimit)
        return std::nullopt;
    Reader reader(locale);
    bool isInGroup = false;
    while (!text.empty()) {
        const auto line = trimmed(takeLine(text));
        if (line.starts_with('[')) {
            // The group comes first; all others hold actions and the like, which nothing here needs.
            if (isInGroup)
                break;
            isInGroup = line == "[Desktop Entry]";
            continue;
        }
        const auto equals = line.find('=');
        if (!isInGroup || line.starts_with('#') || equals == line.npos)
            continue;
        reader.read(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
    return std::move(reader).result();
}

std::string messagesLocale() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const char* set = std::getenv(variable); set != nullptr && set[0] != '\0')
            return set;
    }
    return {};
}

}  // namespace brindle
