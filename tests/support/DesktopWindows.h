#pragma once

#include <QString>

/// The windows of other processes, as the desktop knows them.
namespace desktop {

/// Title of a visible window of the process; empty while it has none.
QString windowTitle(qint64 processId);

/// Asks that window to close, as its close button does. False when there is none.
bool closeWindow(qint64 processId);

} // namespace desktop
