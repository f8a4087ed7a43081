#pragma once

/// Turns designed sizes, given in pixels at 96 dots per inch, into whole pixels of a display.
class Scale final
{
public:
    /// @p logicalDpi is the horizontal logical resolution of the widget or screen drawn on, in dots
    /// per inch.
    explicit Scale(double logicalDpi);

    /// Pixels of the display for one designed pixel.
    [[nodiscard]] double factor() const { return m_factor; }

    /// @p designed in pixels of the display, rounded to the nearest whole number, halves away from
    /// zero.
    [[nodiscard]] int px(double designed) const;

private:
    double m_factor;
};
