#include "views/RuleTableView.h"

#include "views/ButtonItemDelegate.h"
#include "views/LineEditDelegateWithRegExpValidator.h"
#include "views/SpinBoxDelegate.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <tuple>
#include <utility>

RuleTableView::RuleTableView(std::vector<RuleTableColumn> columns, QWidget *parent)
    : QTableView(parent)
    , m_columns(std::move(columns))
    , m_scale(logicalDpiX())
{
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setFocusPolicy(Qt::StrongFocus);
    setSortingEnabled(true);
    setAutoScroll(true);
    setShowGrid(false);
    setMouseTracking(true);
    setUpHeaders();
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    setFrameShape(StyledPanel);
    setFrameShadow(Plain);
    sortByColumn(m_sortColumn, m_sortOrder);
    setUpLook();
    // One row, also in a style that scrolls tables by the pixel.
    verticalScrollBar()->setSingleStep(verticalHeader()->defaultSectionSize());
}

void RuleTableView::setUpHeaders()
{
    QHeaderView *header = horizontalHeader();
    header->setHighlightSections(false);
    header->setStretchLastSection(false);
    header->setSectionResizeMode(QHeaderView::Fixed);
    header->setMinimumSectionSize(1);
    header->setStyleSheet(
        QStringLiteral("QHeaderView { color: #595959; text-align: bottom; }"
                       "QHeaderView::section { background-color: #fafbfd;"
                       " border: %1px solid #ebebeb;"
                       " border-top: none; border-left: none; padding-left: %2px; }"
                       "QHeaderView::down-arrow { image: url(:/SortDown); }"
                       " QHeaderView::up-arrow { image: url(:/SortUp); }")
            .arg(m_scale.px(1))
            .arg(m_scale.px(5)));
    // Deliberately without a horizontal flag.
    header->setDefaultAlignment(Qt::AlignVCenter);
    QFont font = header->font();
    font.setWeight(QFont::Bold);
    if (font.pointSize() > 0) {
        font.setPointSize(font.pointSize() + 1);
    }
    header->setFont(font);

    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->hide();
}

void RuleTableView::setUpLook()
{
    setStyleSheet(QStringLiteral("QTableView { outline: 0; border: %1px solid #dcdcdc; }"
                                 "QTableView::item { border-bottom: %1px solid #ebebeb;"
                                 " background-color: #f0f8ff; padding-left: %2px; }"
                                 "QTableView::item:selected { background: #3899fa; }")
                      .arg(m_scale.px(1))
                      .arg(m_scale.px(5)));
}

void RuleTableView::setModel(QAbstractItemModel *model)
{
    QTableView::setModel(model);
    if (m_deleteDelegate == nullptr) {
        installDelegates();
    }
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

void RuleTableView::installDelegates()
{
    for (int column = 0; column < deleteColumn(); ++column) {
        setItemDelegateForColumn(column, createDelegate(m_columns[std::size_t(column)]));
    }
    m_deleteDelegate = new ButtonItemDelegate(QStringLiteral(":/DeleteInactive"),
                                              QStringLiteral(":/Delete"), this);
    setItemDelegateForColumn(deleteColumn(), m_deleteDelegate);
    // In this order: who listens to the signal still finds the row.
    connect(m_deleteDelegate, &ButtonItemDelegate::clicked, this,
            &RuleTableView::onDeleteMaskValidationRule);
    connect(m_deleteDelegate, &ButtonItemDelegate::clicked, this, &RuleTableView::removeRow);
    connect(horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
            &RuleTableView::keepSortable);
}

QAbstractItemDelegate *RuleTableView::createDelegate(const RuleTableColumn &column)
{
    if (column.editor == RuleTableColumn::Editor::SpinBox) {
        return new SpinBoxDelegate(this, 0, std::numeric_limits<int>::max());
    }
    return new LineEditDelegateWithRegExpValidator(
        this, QRegExp(QLatin1String(column.expression)),
        QCoreApplication::translate(metaObject()->className(), column.prompt));
}

int RuleTableView::deleteColumn() const
{
    return static_cast<int>(m_columns.size()) - 1;
}

void RuleTableView::removeRow(int row)
{
    model()->removeRows(row, 1);
}

void RuleTableView::keepSortable(int column, Qt::SortOrder order)
{
    if (column == deleteColumn()) {
        horizontalHeader()->setSortIndicator(m_sortColumn, m_sortOrder);
        return;
    }
    m_sortColumn = column;
    m_sortOrder = order;
}

int RuleTableView::scaledFrameWidth() const
{
    return m_scale.px(style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
}

void RuleTableView::recomputeColumnWidths()
{
    m_columnWidths.clear();
    if (model() != nullptr) {
        const int margin = m_scale.px(style()->pixelMetric(QStyle::PM_HeaderMargin));
        const int surround = 2 * (scaledFrameWidth() + margin);
        for (const RuleTableColumn &column : m_columns) {
            const QString header =
                model()->headerData(column.measuredColumn, Qt::Horizontal).toString();
            const double contents = column.widthFactor * fontMetrics().horizontalAdvance(header);
            m_columnWidths.push_back(surround + static_cast<int>(std::lround(contents)));
        }
    }
    m_columnWidthSum = std::accumulate(m_columnWidths.begin(), m_columnWidths.end(), 0);
}

void RuleTableView::updateMinimumHeight()
{
    setMinimumHeight(verticalHeader()->defaultSectionSize() + horizontalHeader()->height()
                     + 2 * scaledFrameWidth());
}

void RuleTableView::beginEditing(const QModelIndex &index)
{
    if (!index.isValid()) {
        return;
    }
    const QPersistentModelIndex target(index);
    // Ends an edit in progress, which may sort the rows anew.
    setFocus();
    setCurrentIndex(target);
    scrollTo(target);
    edit(target);
}

void RuleTableView::resizeEvent(QResizeEvent *event)
{
    const int newWidth = event->size().width();
    QTableView::resizeEvent(event);
    recomputeColumnWidths();
    const int spareWidth = std::max(0, newWidth - m_columnWidthSum);
    for (std::size_t column = 0; column < m_columnWidths.size(); ++column) {
        const int extra = m_columns[column].takesSpareWidth ? spareWidth : 0;
        horizontalHeader()->resizeSection(static_cast<int>(column), m_columnWidths[column] + extra);
    }
}

void RuleTableView::commitData(QWidget *editor)
{
    const QPersistentModelIndex edited(currentIndex());
    const int oldRow = edited.row();
    QTableView::commitData(editor);
    if (edited.row() != oldRow) {
        std::tie(m_firstMovedRow, m_lastMovedRow) = std::minmax(oldRow, edited.row());
        QTimer::singleShot(0, this, [this] { m_lastMovedRow = -1; });
    }
}

void RuleTableView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    QTableView::closeEditor(editor, hint);
    if (hint == QAbstractItemDelegate::SubmitModelCache) {
        scrollTo(currentIndex());
    }
}

void RuleTableView::mousePressEvent(QMouseEvent *event)
{
    // The press takes the focus from an editor before it arrives here. When that edit has sorted
    // another rule under the pointer, the click must not remove it.
    const int row = rowAt(event->pos().y());
    m_clickIsVoid = row >= m_firstMovedRow && row <= m_lastMovedRow;
    m_lastMovedRow = -1;
    QTableView::mousePressEvent(event);
}

void RuleTableView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!std::exchange(m_clickIsVoid, false)) {
        QTableView::mouseReleaseEvent(event);
        return;
    }
    QMouseEvent besideAllCells(event->type(), QPointF(-1, -1), event->button(), event->buttons(),
                               event->modifiers());
    QTableView::mouseReleaseEvent(&besideAllCells);
}

void RuleTableView::keyPressEvent(QKeyEvent *event)
{
    if (!event->matches(QKeySequence::Copy) || model() == nullptr) {
        QTableView::keyPressEvent(event);
        return;
    }
    QGuiApplication::clipboard()->setText(selectionAsText());
}

QString RuleTableView::selectionAsText() const
{
    QModelIndexList indexes = selectionModel()->selectedIndexes();
    std::sort(indexes.begin(), indexes.end());
    const int columnCount = model()->columnCount();

    QString text;
    QStringList cells;
    int previousRow = 0;
    for (int count = 1; count <= indexes.size(); ++count) {
        const QModelIndex &index = indexes.at(count - 1);
        const QString cell = index.data(Qt::DisplayRole).toString().simplified();
        const bool isLast = count == indexes.size();
        if (index.row() != previousRow || isLast) {
            if (isLast && index.column() != deleteColumn()) {
                cells.append(cell);
            }
            if (!cells.isEmpty()) {
                text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
                cells.clear();
            }
        }
        previousRow = index.row();
        // Whole rows are selected, so this leaves out the cells of the delete column.
        if (count % columnCount != 0) {
            cells.append(cell);
        }
    }
    return text;
}

QModelIndex RuleTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex current = currentIndex();
    const int lastColumn = deleteColumn() - 1;
    if (current.isValid()) {
        const int rowCount = model()->rowCount();
        if (action == MoveNext && current.column() >= lastColumn) {
            return model()->index((current.row() + 1) % rowCount, 0);
        }
        if (action == MovePrevious && current.column() == 0) {
            return model()->index((current.row() + rowCount - 1) % rowCount, lastColumn);
        }
    }
    return QTableView::moveCursor(action, modifiers);
}
