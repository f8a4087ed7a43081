// The expansion and the cleaning of paths, measured against rules that are written another way.

#include "common/Paths.h"
#include "fuzz/Expect.h"
#include "fuzz/Scratch.h"
#include "fuzz/Target.h"
#include "fuzz/Text.h"

#include <QDir>
#include <QHash>
#include <QString>

namespace {

using fuzz::expect;

bool isPlaceholderCharacter(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character == QLatin1Char('_')
           || character == QLatin1Char('(') || character == QLatin1Char(')');
}

/// Length of the placeholder at @p start, both signs included; 0 when there is none.
int placeholderLength(const QString &text, int start)
{
    int end = start + 1;
    while (end < text.size() && isPlaceholderCharacter(text.at(end))) {
        ++end;
    }
    const bool isPlaceholder = text.at(start) == QLatin1Char('%') && end > start + 1
                               && end < text.size() && text.at(end) == QLatin1Char('%');
    return isPlaceholder ? end + 1 - start : 0;
}

/// Length of the placeholder that @p text begins with, if it is the only one; otherwise 0. Two that
/// share a sign are two.
int onlyPlaceholderLength(const QString &text)
{
    int count = 0;
    for (int start = 0; start < text.size(); ++start) {
        count += placeholderLength(text, start) > 0 ? 1 : 0;
    }
    return count == 1 ? placeholderLength(text, 0) : 0;
}

/// A placeholder always becomes the same text, whatever follows it.
void expectSameAsBefore(QHash<QString, QString> &seen, const QString &key, const QString &text,
                        const char *rule)
{
    const auto before = seen.constFind(key);
    if (before == seen.constEnd()) {
        seen.insert(key, text);
    } else {
        expect(*before == text, rule);
    }
}

void expectExpansionRules(const QString &path)
{
    static QHash<QString, QString> folders;
    const QString expanded = expandPlaceholder(path);
    const int length = onlyPlaceholderLength(path);
    if (expanded == path) {
        const QString key = path.left(length).toUpper();
        expect(!folders.contains(key), "a known placeholder is expanded");
        return;
    }
    expect(length > 0, "only a single placeholder at the start is expanded");
    const QString rest = path.mid(length);
    expect(expanded.endsWith(rest), "what follows a placeholder stays");
    const QString folder = expanded.chopped(rest.size());
    expect(!folder.isEmpty(), "a placeholder is not expanded to nothing");
    expectSameAsBefore(folders, path.left(length).toUpper(), folder,
                       "a placeholder stands for one folder");
}

void expectCleaningRules(const QString &path)
{
    static QHash<QString, QString> spellings;
    const QString clean = QDir::cleanPath(path.trimmed());
    const QString normalized = QDir::fromNativeSeparators(normalizePath(path));
    expect(normalized.toUpper() == clean.toUpper(), "cleaning changes no letter but in its case");
    if (normalized != clean) {
        const int length = onlyPlaceholderLength(normalized);
        expect(length > 0, "the case is changed in a placeholder only");
        const QString rest = normalized.mid(length);
        expect(clean.endsWith(rest), "what follows a placeholder keeps its case");
        expectSameAsBefore(spellings, normalized.left(length).toUpper(), normalized.left(length),
                           "a placeholder has one spelling");
    }
    expect(normalizePath(QLatin1String(" \t") + path + QLatin1Char('\n')) == normalizePath(path),
           "white space around a path does not count");
    const QString expanded = expandPlaceholder(clean);
    if (expanded != clean) {
        expect(expandPlaceholder(normalized) == expanded, "a preferred spelling names the same");
    }
}

} // namespace

int LLVMFuzzerInitialize(int * /*argumentCount*/, char *** /*arguments*/)
{
    (void)fuzz::scratchFolder();
    qputenv("SYSTEMDRIVE", "C:");
    qputenv("HOMEDRIVE", "H:");
    qunsetenv("PROGRAMFILES");
    fuzz::expectNoWarnings();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = fuzz::textOf(data, size);
    expectExpansionRules(path);
    expectCleaningRules(path);
    return 0;
}
