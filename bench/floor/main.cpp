#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>
#include <chrono>

// The least that a program of the toolkit with an icon in the tray, a window of text in two fonts and a poll that does
// nothing can be: the floor under Brindle's start, memory and idling.
int main(int argc, char** argv) {
    constexpr std::chrono::milliseconds startMayTake{100};
    QApplication application(argc, argv);
    QPixmap square(22, 22);
    square.fill(Qt::white);
    QSystemTrayIcon icon{QIcon(square)};
    icon.show();
    QTimer::singleShot(startMayTake, [] {
        static QLabel window(QStringLiteral("<p style='font-family: Inter'>Search…</p><pre>Some text 😀</pre>"));
        window.resize(350, 500);
        window.show();
    });
    QTimer poll;
    poll.start(std::chrono::milliseconds(500));
    return QApplication::exec();
}
