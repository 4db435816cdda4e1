#include "platform/x11/X11PasteChords.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>

namespace brindle {

namespace {

struct Exception {
    std::string_view name;  // half of WM_CLASS in lower case
    PasteChord chord;
};
constexpr std::array exceptions = {
    Exception{"alacritty", PasteChord::controlShiftV},
    Exception{"deepin-terminal", PasteChord::controlShiftV},
    Exception{"emacs", PasteChord::shiftInsert},
    Exception{"gnome-terminal", PasteChord::controlShiftV},
    Exception{"gnome-terminal-server", PasteChord::controlShiftV},
    Exception{"gvim", PasteChord::shiftInsert},
    Exception{"kgx", PasteChord::controlShiftV},
    Exception{"kitty", PasteChord::shiftInsert},  // takes Control+Shift+V in Latin layouts only
    Exception{"konsole", PasteChord::controlShiftV},
    Exception{"lxterminal", PasteChord::controlShiftV},
    Exception{"mate-terminal", PasteChord::controlShiftV},
    Exception{"qterminal", PasteChord::controlShiftV},
    Exception{"roxterm", PasteChord::controlShiftV},
    Exception{"sakura", PasteChord::controlShiftV},
    Exception{"st-256color", PasteChord::controlShiftV},
    Exception{"terminator", PasteChord::controlShiftV},
    Exception{"tilix", PasteChord::controlShiftV},
    Exception{"urxvt", PasteChord::shiftInsert},
    Exception{"uxterm", PasteChord::shiftInsert},
    Exception{"xfce4-terminal", PasteChord::controlShiftV},
    Exception{"xterm", PasteChord::shiftInsert},
};

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
    return text;
}

const Exception* find(const std::string& name) {
    const auto found = std::find_if(exceptions.begin(), exceptions.end(),
                                    [lower = lowered(name)](const Exception& each) { return each.name == lower; });
    return found == exceptions.end() ? nullptr : &*found;
}

}  // namespace

PasteChord pasteChordFor(const WindowNames& names) {
    for (const auto& name : {names.windowClass, names.instance}) {
        if (const auto* exception = find(name))
            return exception->chord;
    }
    return PasteChord::controlV;
}

}  // namespace brindle
