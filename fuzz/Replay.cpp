// Tries every file of the folders that it is given, in place of a fuzzing engine: the seeds and
// what was found before.

#include "fuzz/Target.h"

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <cstdlib>

namespace {

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator entries(folder, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files.append(entries.next());
    }
    files.sort();
    return files;
}

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s cannot be read\n", qPrintable(path));
        return false;
    }
    // Seen when the input ends the process.
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout);
    const QByteArray input = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                           static_cast<std::size_t>(input.size()));
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    for (int argument = 1; argument < argc; ++argument) {
        const QStringList files = filesBelow(QFile::decodeName(argv[argument]));
        for (const QString &path : files) {
            if (!replay(path)) {
                return EXIT_FAILURE;
            }
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    // A replay of nothing would pass unnoticed.
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
