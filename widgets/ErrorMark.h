#pragma once

#include <QGraphicsDropShadowEffect>

/// The red glow around a field whose value is wrong.
///
/// It reaches beyond the field, so the field's parent must leave room around the field.
class ErrorMark final : public QGraphicsDropShadowEffect
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ErrorMark)

public:
    /// Attaches itself to @p field, which owns it, and is off.
    explicit ErrorMark(QWidget *field);

    /// Switches the mark of @p field on or off. A field without a mark is left alone.
    static void setMarked(QWidget *field, bool marked);
    /// Whether @p field has a mark that is on.
    [[nodiscard]] static bool isMarked(const QWidget *field);
};
