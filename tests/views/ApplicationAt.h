#pragma once

#include <QApplication>
#include <QByteArray>

/// Sets the logical resolution of every screen, before the application reads it.
template <int dotsPerInch>
struct FontDpi
{
    FontDpi() { qputenv("QT_FONT_DPI", QByteArray::number(dotsPerInch)); }
};

/// An application whose screens have @p dotsPerInch logical dots per inch.
template <int dotsPerInch>
class ApplicationAt final : private FontDpi<dotsPerInch>, public QApplication
{
public:
    using QApplication::QApplication;
};
