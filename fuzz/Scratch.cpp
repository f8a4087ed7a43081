#include "fuzz/Scratch.h"

#include "fuzz/Expect.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

namespace fuzz {

const QString &scratchFolder()
{
    static const QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/zel-fuzz-XXXXXX"));
    static const QString path = [] {
        expect(folder.isValid(), "there is a scratch folder");
        QString canonical = QFileInfo(folder.path()).canonicalFilePath();
        const QByteArray native = QDir::toNativeSeparators(canonical).toLocal8Bit();
        for (const char *name : {"TEMP", "TMP", "TMPDIR", "XDG_RUNTIME_DIR"}) {
            qputenv(name, native);
        }
        return canonical;
    }();
    return path;
}

QString extractionFolder()
{
    return scratchFolder() + QStringLiteral("/Halvorn Drives/ZEL File Creator");
}

} // namespace fuzz
