#pragma once

#include <QApplication>
#include <QKeyEvent>

#include "bench/Desk.h"
#include "views/ContentView.h"

namespace brindle::bench {

/// The main view over a history, as the popover shows it.
struct Window {
    Window(std::size_t count, std::size_t bytes, Storing storing = Storing::nowhere) : desk(storing, count, bytes) {
        view.show();
        QApplication::setActiveWindow(&view);
        QApplication::processEvents();  // a window paints once it is exposed
        redraw();
    }

    /// What one turn of the main loop does.
    void redraw() {
        desk.platform.queue.run();
        view.repaint();
    }

    Desk desk;
    ContentView view{desk.history, desk.monitor, desk.settings};
};

inline void type(QWidget& field, QChar character) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, character);
    QApplication::sendEvent(&field, &press);
}

}  // namespace brindle::bench
