#pragma once

#include "common/Scale.h"

#include <QAbstractItemDelegate>
#include <QTableView>

#include <vector>

class ButtonItemDelegate;

/// One column of a rule table.
struct RuleTableColumn
{
    enum class Editor { SpinBox, LineEdit, DeleteButton };

    Editor editor;
    double widthFactor;   ///< Width of the contents over that of the measured header text.
    int measuredColumn;   ///< The column whose header text is measured.
    bool takesSpareWidth; ///< Whether the column widens when the view is wider than all columns.
    const char *expression = nullptr; ///< Line edit: what the text must match.
    const char *prompt = nullptr;     ///< Line edit: source text to translate in the view's class.
};

/// Shows and edits a table of rules: one editor a column, sorting by a click on a header, copying
/// of whole rows, and a button on each row that removes it at once.
///
/// The model is expected to sort; row numbers are those of the view.
class RuleTableView : public QTableView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RuleTableView)

public:
    /// Creates the column editors as well; they serve every later model.
    void setModel(QAbstractItemModel *model) override;

    /// Computes the preferred width of each column. They take effect with the next resize.
    void recomputeColumnWidths();

    /// Sets the minimum height so that the header and one row are seen.
    void updateMinimumHeight();

    /// Scrolls to @p index, an index of the view's model, selects its row and opens its editor,
    /// after an edit in progress has been brought to its end. Does nothing for an invalid index.
    void beginEditing(const QModelIndex &index);

signals:
    /// The delete button of @p row was clicked; the row is still there and is removed next. The
    /// name is deliberately the same for all rules.
    void onDeleteMaskValidationRule(int row);

protected:
    /// Exactly one of @p columns is a delete button, the last one.
    RuleTableView(std::vector<RuleTableColumn> columns, QWidget *parent);

    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    /// Tab and Backtab pass over the delete column, where nothing can be entered.
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

protected slots:
    /// Notes which rows the edit moves, for the click that may have ended it.
    void commitData(QWidget *editor) override;
    /// After Enter the edited rule stays in sight, wherever the sorting has put it.
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void setUpHeaders();
    void setUpLook();
    void installDelegates();
    [[nodiscard]] QAbstractItemDelegate *createDelegate(const RuleTableColumn &column);
    [[nodiscard]] int deleteColumn() const;
    [[nodiscard]] int scaledFrameWidth() const;
    [[nodiscard]] QString selectionAsText() const;

    void removeRow(int row);
    void keepSortable(int column, Qt::SortOrder order);

    std::vector<RuleTableColumn> m_columns;
    Scale m_scale;
    ButtonItemDelegate *m_deleteDelegate = nullptr;
    std::vector<int> m_columnWidths;
    int m_columnWidthSum = 0;
    int m_sortColumn = 0;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    /// The rows between which the edit that was just committed has moved its rule.
    int m_firstMovedRow = 0;
    int m_lastMovedRow = -1;
    /// Whether the pressed mouse button has hit another rule than the one aimed at.
    bool m_clickIsVoid = false;
};
