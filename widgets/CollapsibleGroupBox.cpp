#include "widgets/CollapsibleGroupBox.h"

#include "common/Scale.h"

#include <QChildEvent>
#include <QScopedValueRollback>
#include <QSize>
#include <QStyle>
#include <QStyleOption>
#include <QStylePainter>
#include <QVariant>

#include <utility>

namespace {

constexpr int kIndicatorSize = 25;
constexpr int kCollapsedHeight = 22;
constexpr char kVisibilityToParent[] = "visibilityToParent";

struct IndicatorImages
{
    QString checked;
    QString checkedHover;
    QString unchecked;
    QString uncheckedHover;
};

/// Whether @p child was hidden by a call, not just never shown yet.
bool isExplicitlyHidden(const QWidget *child)
{
    return child->testAttribute(Qt::WA_WState_ExplicitShowHide)
           && child->testAttribute(Qt::WA_WState_Hidden);
}

bool wantsToBeShown(const QWidget *child)
{
    const QVariant wish = child->property(kVisibilityToParent);
    return !wish.isValid() || wish.toBool();
}

} // namespace

class CollapsibleGroupBoxPrivate final
{
public:
    CollapsibleGroupBoxPrivate(CollapsibleGroupBox *box, IndicatorImages indicatorImages)
        : q(box)
        , images(std::move(indicatorImages))
        , scale(box->logicalDpiX())
        , collapsedHeight(scale.px(kCollapsedHeight))
    {
    }

    void initialise();
    [[nodiscard]] QString styleSheet() const;
    [[nodiscard]] QRect titlePart(QStyle::SubControl part) const;
    [[nodiscard]] int titleHeight() const;
    void collapse();
    void restoreSize() const;
    void updateChild(QWidget *child);
    void updateChildren();

    CollapsibleGroupBox *const q;
    const IndicatorImages images;
    const Scale scale;
    QSize savedSize = QSize(0, 0); ///< When the box was collapsed last.
    int savedMaximumHeight = 0;    ///< When the box was collapsed last.
    int collapsedHeight;
    /// The box itself shows or hides children: what they then report is not their own wish.
    bool updating = false;
    bool initialised = false; ///< The box was on the display once.
};

void CollapsibleGroupBoxPrivate::initialise()
{
    q->setStyleSheet(styleSheet());
    // A box in a styled window gets no word of its new style sheet until it is shown, and the
    // margins of its content are worked out here.
    q->ensurePolished();
    q->setCheckable(true);
    savedMaximumHeight = q->maximumHeight();
    QObject::connect(q, &QGroupBox::toggled, q, &CollapsibleGroupBox::expand);
}

QString CollapsibleGroupBoxPrivate::styleSheet() const
{
    const int indicator = scale.px(kIndicatorSize);
    const int margin = (indicator + 1) / 2;
    const auto indicatorImage = [](const char *state, const QString &image) {
        return QStringLiteral("CollapsibleGroupBox::indicator:%1 { image: url(%2); }")
            .arg(QLatin1String(state), image);
    };
    return QStringLiteral("CollapsibleGroupBox { background-color: transparent; border: none; "
                          "margin-top: %1px; margin-right: %2px; margin-left: 0; }")
               .arg(margin)
               .arg(margin)
           + QStringLiteral("CollapsibleGroupBox::title { subcontrol-origin: margin; }")
           + QStringLiteral("CollapsibleGroupBox::indicator { width: %1px; height: %2px; }")
                 .arg(indicator)
                 .arg(indicator)
           + indicatorImage("checked", images.checked)
           + indicatorImage("checked:hover", images.checkedHover)
           + indicatorImage("unchecked", images.unchecked)
           + indicatorImage("unchecked:hover", images.uncheckedHover);
}

QRect CollapsibleGroupBoxPrivate::titlePart(QStyle::SubControl part) const
{
    QStyleOptionGroupBox option;
    q->initStyleOption(&option);
    return q->style()->subControlRect(QStyle::CC_GroupBox, &option, part, q);
}

int CollapsibleGroupBoxPrivate::titleHeight() const
{
    return q->title().isEmpty() ? 0 : titlePart(QStyle::SC_GroupBoxLabel).height();
}

void CollapsibleGroupBoxPrivate::collapse()
{
    savedMaximumHeight = q->maximumHeight();
    q->setMaximumHeight(titleHeight() + collapsedHeight);
}

void CollapsibleGroupBoxPrivate::restoreSize() const
{
    q->setMaximumHeight(savedMaximumHeight);
    q->resize(savedSize);
}

void CollapsibleGroupBoxPrivate::updateChild(QWidget *child)
{
    // A window of the child's own, such as a dialog or a menu, is no part of the box.
    if (!q->testAttribute(Qt::WA_WState_Created) || child->isWindow()) {
        return;
    }
    const QScopedValueRollback<bool> guard(updating, true);
    const bool isWanted = wantsToBeShown(child);
    const bool isShown = isWanted && q->isChecked();
    if (isShown || child->testAttribute(Qt::WA_WState_Created)) {
        child->setVisible(isShown);
    }
    if (isWanted) {
        child->setAttribute(Qt::WA_WState_ExplicitShowHide, false);
    }
}

void CollapsibleGroupBoxPrivate::updateChildren()
{
    const auto children = q->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *const child : children) {
        updateChild(child);
    }
}

CollapsibleGroupBox::CollapsibleGroupBox(const QString &checkedImage,
                                         const QString &checkedHoverImage,
                                         const QString &uncheckedImage,
                                         const QString &uncheckedHoverImage, const QString &title,
                                         QWidget *parent)
    : QGroupBox(title, parent)
    , d(std::make_unique<CollapsibleGroupBoxPrivate>(
          this,
          IndicatorImages{checkedImage, checkedHoverImage, uncheckedImage, uncheckedHoverImage}))
{
    d->initialise();
}

CollapsibleGroupBox::CollapsibleGroupBox(QWidget *parent)
    : CollapsibleGroupBox(QString(), QString(), QString(), QString(), QString(), parent)
{
}

CollapsibleGroupBox::~CollapsibleGroupBox() = default;

int CollapsibleGroupBox::collapsedHeight() const
{
    return d->collapsedHeight;
}

void CollapsibleGroupBox::setCollapsedHeight(int height)
{
    d->collapsedHeight = height;
}

void CollapsibleGroupBox::setVisible(bool visible)
{
    {
        const QScopedValueRollback<bool> guard(d->updating, true);
        QGroupBox::setVisible(visible);
    }
    if (!d->initialised && isVisible()) {
        d->initialised = true;
        d->updateChildren();
    }
}

void CollapsibleGroupBox::expand(bool expanded)
{
    if (!expanded) {
        d->savedSize = size();
    }
    d->updateChildren();
    if (expanded) {
        d->restoreSize();
    } else {
        d->collapse();
    }
    emit this->expanded(expanded);
}

void CollapsibleGroupBox::collapsed(bool collapsed)
{
    setChecked(!collapsed);
}

void CollapsibleGroupBox::childEvent(QChildEvent *event)
{
    if (event->added() && event->child()->isWidgetType()) {
        auto *const child = static_cast<QWidget *>(event->child());
        if (isExplicitlyHidden(child)) {
            child->setProperty(kVisibilityToParent, false);
        }
        child->installEventFilter(this);
        d->updateChild(child);
    } else if (event->removed()) {
        event->child()->removeEventFilter(this);
    }
    QGroupBox::childEvent(event);
}

void CollapsibleGroupBox::paintEvent(QPaintEvent *event)
{
    QGroupBox::paintEvent(event);
    if (!hasFocus() || !title().isEmpty()) {
        return;
    }
    // The style marks the keyboard focus on the title, so a box without one would not show it.
    QStylePainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = d->titlePart(QStyle::SC_GroupBoxCheckBox);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
}

bool CollapsibleGroupBox::eventFilter(QObject *watched, QEvent *event)
{
    if (!d->updating && watched->isWidgetType()) {
        if (event->type() == QEvent::ShowToParent) {
            watched->setProperty(kVisibilityToParent, true);
            d->updateChild(static_cast<QWidget *>(watched));
        } else if (event->type() == QEvent::HideToParent) {
            watched->setProperty(kVisibilityToParent, false);
        }
    }
    return QGroupBox::eventFilter(watched, event);
}
