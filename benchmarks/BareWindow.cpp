#include <QApplication>
#include <QMainWindow>
#include <QTabWidget>
#include <QTableWidget>

/// The least that a window with two tabs and a table can be.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    auto *tabs = new QTabWidget(&window);
    tabs->addTab(new QTableWidget(0, 4, tabs), QStringLiteral("Table"));
    tabs->addTab(new QWidget(tabs), QStringLiteral("Page"));
    window.setCentralWidget(tabs);
    window.resize(1158, 716);
    window.show();
    return QApplication::exec();
}
