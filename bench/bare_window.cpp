// SPDX-License-Identifier: MIT
// The yardstick for Corvane's start: about the least that a Qt Widgets program of the same style
// does, a main window with a menu bar and a text. "bare_window empty" has not even those.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QMainWindow window;
    if (argc == 1) {
        window.menuBar()->addMenu(QStringLiteral("File"));
        window.setCentralWidget(new QLabel(QStringLiteral("TMX is disconnected!"), &window));
    }
    window.resize(1000, 400);
    window.show();
    return QApplication::exec();
}
