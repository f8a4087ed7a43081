#pragma once

#include <QIcon>
#include <QObject>

/// Gives tool buttons another icon while the mouse is over them.
///
/// Install it as an event filter on any number of tool buttons. Objects of other classes are left
/// alone.
class ButtonHoverWatcher final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ButtonHoverWatcher)

public:
    ButtonHoverWatcher(QIcon normalIcon, QIcon hoverIcon, QObject *parent = nullptr);

    /// Consumes what tells a tool button that the mouse enters or leaves it. So the button's own
    /// hover look does not react, which is deliberate.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const QIcon m_normalIcon;
    const QIcon m_hoverIcon;
};
