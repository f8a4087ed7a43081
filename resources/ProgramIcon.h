#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

/// The icon that the program carries as @p name, such as ":/Add"; no icon for an empty name.
///
/// A QIcon made of the name itself would look for the type of the file, as the name has no suffix,
/// in the desktop's whole database of file types.
[[nodiscard]] inline QIcon programIcon(const QString &name)
{
    return name.isEmpty() ? QIcon() : QIcon(QPixmap(name));
}
