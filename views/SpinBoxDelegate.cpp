#include "views/SpinBoxDelegate.h"

#include <QSpinBox>

SpinBoxDelegate::SpinBoxDelegate(QObject *parent, int minimum, int maximum)
    : QStyledItemDelegate(parent)
    , m_minimum(minimum)
    , m_maximum(maximum)
{
}

QWidget *SpinBoxDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                       const QModelIndex & /*index*/) const
{
    auto *spinBox = new QSpinBox(parent);
    spinBox->setFrame(false);
    // Without a frame the cell would shine through around the arrows.
    spinBox->setAutoFillBackground(true);
    spinBox->setRange(m_minimum, m_maximum);
    return spinBox;
}

void SpinBoxDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    qobject_cast<QSpinBox *>(editor)->setValue(index.data(Qt::EditRole).toInt());
}

void SpinBoxDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                   const QModelIndex &index) const
{
    auto *spinBox = qobject_cast<QSpinBox *>(editor);
    spinBox->interpretText();
    const QVariant value = spinBox->value();
    if (index.data(Qt::EditRole) != value) {
        model->setData(index, value, Qt::EditRole);
    }
}

void SpinBoxDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                           const QModelIndex & /*index*/) const
{
    editor->setGeometry(option.rect);
}
