#pragma once

#include <QRegExp>
#include <QString>
#include <QStyledItemDelegate>

/// Edits texts in a line edit that a regular expression guards.
///
/// What cannot become a match cannot be typed. A text that does not match yet keeps the editor open
/// on Enter and Tab, and is dropped, with the model left alone, when the focus goes elsewhere.
class LineEditDelegateWithRegExpValidator final : public QStyledItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LineEditDelegateWithRegExpValidator)

public:
    /// The whole text must match @p expression; @p prompt is shown while there is no text.
    LineEditDelegateWithRegExpValidator(QObject *parent, const QRegExp &expression, QString prompt);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    /// Leaves the model alone when the text is the one that it holds: bytes that are no valid UTF-8
    /// outlive an edit that changes nothing.
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

private:
    QRegExp m_expression;
    QString m_prompt;
};
