#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>

/// The least that a program with a Qt window does: what the program's own start is compared with. With an argument the
/// window has a menu and a line of text, as every window that is of use.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Empty window"));
    window.resize(1000, 700);
    if (argc > 1) {
        window.menuBar()->addMenu(QStringLiteral("&File"));
        window.setCentralWidget(new QLabel(QStringLiteral("A line of text")));
    }
    window.show();
    return QApplication::exec();
}
