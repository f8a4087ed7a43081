#pragma once

#include <QGroupBox>

#include <memory>

class CollapsibleGroupBoxPrivate;

/// A group box that its check box folds: checked, it shows its children; unchecked, only its title.
///
/// Each child's dynamic bool property "visibilityToParent" keeps the child's own wish to be shown,
/// so that a child that was hidden on purpose stays hidden when the box unfolds.
class CollapsibleGroupBox final : public QGroupBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CollapsibleGroupBox)
    Q_PROPERTY(int collapsedHeight READ collapsedHeight WRITE setCollapsedHeight)

public:
    /// The images, given as paths, stand in for the check box: expanded and collapsed, each also
    /// for when the mouse is over it.
    CollapsibleGroupBox(const QString &checkedImage, const QString &checkedHoverImage,
                        const QString &uncheckedImage, const QString &uncheckedHoverImage,
                        const QString &title, QWidget *parent = nullptr);
    /// A box without a title and without images.
    explicit CollapsibleGroupBox(QWidget *parent = nullptr);
    ~CollapsibleGroupBox() override;

    /// Height in pixels to which the box collapses, below its title if it has one.
    [[nodiscard]] int collapsedHeight() const;
    /// Takes effect the next time the box collapses.
    void setCollapsedHeight(int height);

    bool eventFilter(QObject *watched, QEvent *event) override;
    void setVisible(bool visible) override;

public slots:
    /// Folds or unfolds the box. It follows the check state; to change that, use collapsed().
    void expand(bool expanded);
    /// Unchecks the box, or checks it when @p collapsed is false.
    void collapsed(bool collapsed);

signals:
    /// The box was unfolded or folded.
    void expanded(bool expanded);

protected:
    void childEvent(QChildEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    friend class CollapsibleGroupBoxPrivate;
    const std::unique_ptr<CollapsibleGroupBoxPrivate> d;
};
