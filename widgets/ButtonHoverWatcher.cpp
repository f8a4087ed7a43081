#include "widgets/ButtonHoverWatcher.h"

#include <QEvent>
#include <QToolButton>

#include <utility>

ButtonHoverWatcher::ButtonHoverWatcher(QIcon normalIcon, QIcon hoverIcon, QObject *parent)
    : QObject(parent)
    , m_normalIcon(std::move(normalIcon))
    , m_hoverIcon(std::move(hoverIcon))
{
}

bool ButtonHoverWatcher::eventFilter(QObject *watched, QEvent *event)
{
    auto *const button = qobject_cast<QToolButton *>(watched);
    if (button == nullptr) {
        return QObject::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::Enter:
        button->setIcon(m_hoverIcon);
        return true;
    case QEvent::Leave:
        button->setIcon(m_normalIcon);
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}
