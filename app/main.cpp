#include "app/ZelCreator.h"

#include <QApplication>
#include <QCommandLineParser>

int main(int argc, char *argv[])
{
    // The form scales its own pixel sizes by the logical DPI; the toolkit must not scale them
    // again.
    QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling);
    const QApplication application(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("ZEL Creator"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("zelfilepath"),
                                 QCoreApplication::translate("main", "ZEL file to decode."),
                                 QString());
    parser.process(application);

    const QStringList arguments = parser.positionalArguments();
    const QString startPath = arguments.value(0);

    ZelCreator window(startPath);
    window.show();
    return QApplication::exec();
}
