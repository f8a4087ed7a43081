#include "views/LineEditDelegateWithRegExpValidator.h"

#include <QLineEdit>
#include <QRegExpValidator>

#include <limits>
#include <utility>

LineEditDelegateWithRegExpValidator::LineEditDelegateWithRegExpValidator(QObject *parent,
                                                                         const QRegExp &expression,
                                                                         QString prompt)
    : QStyledItemDelegate(parent)
    , m_expression(expression)
    , m_prompt(std::move(prompt))
{
}

QWidget *LineEditDelegateWithRegExpValidator::createEditor(QWidget *parent,
                                                           const QStyleOptionViewItem & /*option*/,
                                                           const QModelIndex & /*index*/) const
{
    auto *lineEdit = new QLineEdit(parent);
    // A package may hold longer texts than a line edit takes unasked; they must not be cut.
    lineEdit->setMaxLength(std::numeric_limits<int>::max());
    lineEdit->setPlaceholderText(m_prompt);
    lineEdit->setValidator(new QRegExpValidator(m_expression, lineEdit));
    return lineEdit;
}

void LineEditDelegateWithRegExpValidator::setEditorData(QWidget *editor,
                                                        const QModelIndex &index) const
{
    qobject_cast<QLineEdit *>(editor)->setText(index.data(Qt::EditRole).toString());
}

void LineEditDelegateWithRegExpValidator::setModelData(QWidget *editor, QAbstractItemModel *model,
                                                       const QModelIndex &index) const
{
    const QString text = qobject_cast<QLineEdit *>(editor)->text();
    if (index.data(Qt::EditRole).toString() != text) {
        model->setData(index, text, Qt::EditRole);
    }
}

void LineEditDelegateWithRegExpValidator::updateEditorGeometry(QWidget *editor,
                                                               const QStyleOptionViewItem &option,
                                                               const QModelIndex & /*index*/) const
{
    editor->setGeometry(option.rect);
}
