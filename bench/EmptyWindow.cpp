#include <QApplication>
#include <QMainWindow>

/// The least that a program with a Qt window does: what the program's own start is compared with.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Empty window"));
    window.resize(1000, 700);
    window.show();
    return QApplication::exec();
}
