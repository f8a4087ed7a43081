#pragma once

#include <QLabel>

/// A plain-text label that breaks its lines when they are wider than a limit: between words where
/// it can, inside a word, such as a long path, where it must. text() stays as it was set.
class MessageLabel final : public QLabel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MessageLabel)

public:
    explicit MessageLabel(QWidget *parent = nullptr);
    ~MessageLabel() override;

    /// Widest line, in pixels; 0, the default, sets no limit.
    [[nodiscard]] int lineWidthLimit() const { return m_lineWidthLimit; }
    void setLineWidthLimit(int pixels);

    /// The text as it is painted, line by line.
    [[nodiscard]] QString brokenText() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] bool isTooWide() const;

    int m_lineWidthLimit = 0;
};
