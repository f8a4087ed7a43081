#include "common/FileIo.h"

#include <QByteArray>
#include <QString>

#include <cstdio>

bool writeBytesToFile(const QString &path, const QByteArray &bytes)
{
    if (path.isEmpty()) {
        return false;
    }
    std::FILE *const file = std::fopen(path.toLocal8Bit().constData(), "wb");
    if (file == nullptr) {
        return false;
    }
    // The count is deliberately left unchecked; see the header.
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), file);
    std::fclose(file);
    return true;
}
