#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>

class DialogKeeper;
class QLabel;
class ZelCreator;

/// Knows, from outside, what a window's title has to say: what the form held when it was last
/// cleared, read or saved, and where that was.
class MarkWitness final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MarkWitness)

public:
    /// Begins to watch a window that was just built with @p startPath.
    MarkWitness(ZelCreator *window, QString startPath, QObject *parent);
    ~MarkWitness() override;

    /// To be called before an event is sent to the window.
    void beforeEvent();
    /// To be called when the event has been handled, with the dialogs that it led to. Returns what
    /// is wrong with the title or with a package that was just saved; empty when nothing is.
    [[nodiscard]] QString afterEvent(const DialogKeeper &dialogs);

    [[nodiscard]] int openCount() const { return m_openCount; }
    [[nodiscard]] int saveCount() const { return m_saveCount; }

private:
    [[nodiscard]] QVariantList content() const;
    [[nodiscard]] bool wasSaved(const QString &path) const;
    [[nodiscard]] QString checkTitle(bool isFresh) const;
    [[nodiscard]] QString checkSavedPackage() const;

    ZelCreator *m_window;
    QLabel *m_message = nullptr;
    QString m_path;
    QVariantList m_baseline;
    QString m_titleBefore;
    int m_resets = 0; ///< How often the rules were replaced since beforeEvent().
    int m_openCount = 0;
    int m_saveCount = 0;
    bool m_pathIsStale = false; ///< Whether the title may still be the one of an empty form.
};
