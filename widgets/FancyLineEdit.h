#pragma once

#include "common/Scale.h"

#include <QLineEdit>

class QLabel;

/// A line edit that shows a small grey text at its left and at its right end, inside the field.
///
/// The two texts are no part of text() and cannot be edited.
class FancyLineEdit : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FancyLineEdit)

public:
    explicit FancyLineEdit(QWidget *parent = nullptr);

    [[nodiscard]] QString leadingText() const;
    void setLeadingText(const QString &text);

    [[nodiscard]] QString trailingText() const;
    void setTrailingText(const QString &text);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QLabel *createLabel(const QString &objectName);
    void setLabelText(QLabel *label, const QString &text);
    void updateTextMargins();
    void placeLabels();

    const Scale m_scale;
    QLabel *const m_leadingLabel;
    QLabel *const m_trailingLabel;
};
