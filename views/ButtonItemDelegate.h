#pragma once

#include "common/Scale.h"

#include <QIcon>
#include <QItemDelegate>
#include <QString>

/// Draws a square icon button in a cell and tells when it is clicked. The cell has no editor.
class ButtonItemDelegate final : public QItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ButtonItemDelegate)

public:
    ButtonItemDelegate(QString inactiveIconPath, QString activeIconPath, QObject *parent);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    /// Always null.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    /// A mouse button that is released strictly inside the square is a click.
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

signals:
    void clicked(int row);

private:
    [[nodiscard]] QRect buttonRect(const QRect &cell) const;
    [[nodiscard]] QIcon icon(int size) const;

    Scale m_scale;
    QString m_inactiveIconPath;
    QString m_activeIconPath;
    mutable QIcon m_icon; ///< The icon as last drawn, m_iconSize pixels wide and high.
    mutable int m_iconSize = 0;
};
