#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>

// The least that a program of the toolkit with an icon in the tray can be: the floor under Brindle's start and memory.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QPixmap square(22, 22);
    square.fill(Qt::white);
    QSystemTrayIcon icon{QIcon(square)};
    icon.show();
    return QApplication::exec();
}
