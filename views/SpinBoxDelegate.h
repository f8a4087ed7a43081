#pragma once

#include <QStyledItemDelegate>

/// Edits whole numbers of a range in a spin box.
class SpinBoxDelegate final : public QStyledItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SpinBoxDelegate)

public:
    /// Numbers from @p minimum to @p maximum, both included, can be entered.
    SpinBoxDelegate(QObject *parent, int minimum, int maximum);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    /// Leaves the model alone when the number is the one that it holds.
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

private:
    int m_minimum;
    int m_maximum;
};
