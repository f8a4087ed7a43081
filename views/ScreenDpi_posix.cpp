#include "views/ScreenDpi.h"

#include <QGuiApplication>
#include <QScreen>

double screenDpi()
{
    return QGuiApplication::primaryScreen()->logicalDotsPerInchX();
}
