#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>

namespace fuzz {

/// Ends the process, as a crash that the engine takes for a finding, unless @p holds.
inline void expect(bool holds, const char *rule)
{
    if (!holds) {
        std::fprintf(stderr, "Broken rule: %s\n", rule);
        std::abort();
    }
}

/// Makes every warning of the toolkit a finding.
inline void expectNoWarnings()
{
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        std::fprintf(stderr, "%s\n", qPrintable(text));
        expect(type == QtDebugMsg || type == QtInfoMsg, "the toolkit has nothing to warn of");
    });
}

} // namespace fuzz
