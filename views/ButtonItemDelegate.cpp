#include "views/ButtonItemDelegate.h"

#include "views/ScreenDpi.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPersistentModelIndex>
#include <QPixmap>
#include <QStyleOptionToolButton>

#include <cmath>
#include <utility>

namespace {

constexpr double kButtonHeight = 0.55; // of the cell's height
constexpr int kLeftMargin = 5;
constexpr int kEdgeWidth = 1;

const QColor kRowColor(0xf0, 0xf8, 0xff);
const QColor kSelectedRowColor(0x38, 0x99, 0xfa);
const QColor kEdgeColor(0xeb, 0xeb, 0xeb);

int rounded(double length)
{
    return static_cast<int>(std::lround(length));
}

QPixmap scaledPixmap(const QString &path, int size)
{
    const QPixmap pixmap(path);
    return pixmap.isNull()
               ? pixmap
               : pixmap.scaled(size, size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

ButtonItemDelegate::ButtonItemDelegate(QString inactiveIconPath, QString activeIconPath,
                                       QObject *parent)
    : QItemDelegate(parent)
    , m_scale(screenDpi())
    , m_inactiveIconPath(std::move(inactiveIconPath))
    , m_activeIconPath(std::move(activeIconPath))
{
}

void ButtonItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    const QVariant data = index.data(Qt::DisplayRole);
    QStyleOptionToolButton button;
    button.rect = buttonRect(option.rect);
    button.text = data.canConvert<QString>() ? QLatin1Char(' ') + data.toString() : QString();
    button.icon = icon(button.rect.width());
    button.iconSize = button.rect.size();
    // Deliberately not enabled: the style then shows the inactive icon, whatever the mouse does.
    button.state = QStyle::State_AutoRaise;
    button.subControls &= ~QStyle::SC_ToolButtonMenu;
    button.features = QStyleOptionToolButton::None;
    button.arrowType = Qt::NoArrow;
    button.toolButtonStyle = Qt::ToolButtonIconOnly;

    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    painter->fillRect(option.rect, isSelected ? kSelectedRowColor : kRowColor);

    painter->save();
    QApplication::style()->drawComplexControl(QStyle::CC_ToolButton, &button, painter);
    painter->restore();

    QRect edge = option.rect;
    edge.setTop(edge.bottom() + 1 - m_scale.px(kEdgeWidth));
    painter->fillRect(edge, kEdgeColor);
}

QWidget *ButtonItemDelegate::createEditor(QWidget * /*parent*/,
                                          const QStyleOptionViewItem & /*option*/,
                                          const QModelIndex & /*index*/) const
{
    return nullptr;
}

bool ButtonItemDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                     const QStyleOptionViewItem &option, const QModelIndex &index)
{
    // The receivers of the click may remove the row.
    const QPersistentModelIndex guardedIndex(index);
    if (event->type() == QEvent::MouseButtonRelease) {
        const QPoint position = static_cast<const QMouseEvent *>(event)->pos();
        if (buttonRect(option.rect).adjusted(1, 1, 0, 0).contains(position)) {
            emit clicked(index.row());
        }
    }
    return QItemDelegate::editorEvent(event, model, option, guardedIndex);
}

QRect ButtonItemDelegate::buttonRect(const QRect &cell) const
{
    const int size = rounded(kButtonHeight * cell.height());
    return {cell.left() + m_scale.px(kLeftMargin),
            cell.top() + rounded(0.5 * (cell.height() - size)), size, size};
}

QIcon ButtonItemDelegate::icon(int size) const
{
    if (size != m_iconSize) {
        const QPixmap inactive = scaledPixmap(m_inactiveIconPath, size);
        const QPixmap active = scaledPixmap(m_activeIconPath, size);
        m_icon = QIcon();
        m_icon.addPixmap(inactive, QIcon::Normal);
        m_icon.addPixmap(inactive, QIcon::Disabled);
        m_icon.addPixmap(active, QIcon::Active);
        m_icon.addPixmap(active, QIcon::Selected);
        m_iconSize = size;
    }
    return m_icon;
}
