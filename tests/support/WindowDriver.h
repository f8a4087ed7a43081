#pragma once

#include <QString>

#include <functional>

class QLineEdit;
class QWidget;

/// What a test does to the program's window, the way a hand does it.
namespace driver {

/// Answers the next file dialog with @p path in its name field. The dialog has to appear
/// while an event loop runs; a dialog that does not appear within 10 seconds fails the test.
/// @p afterwards happens when the dialog has taken the answer and before the program hears of it.
void answerFileDialog(const QString &path, const std::function<void()> &afterwards = {});

/// Cancels the next file dialog with the Escape key.
void cancelFileDialog();

/// Runs @p action on the next modal dialog. Every dialog gets closed, whatever the action does.
void onNextDialog(const std::function<void(QWidget *dialog)> &action);

/// Clicks into @p field, selects all of it and types @p text over it.
void retype(QLineEdit *field, const QString &text);

/// Types @p text where the cursor is; what no key can type is pasted.
void enter(QWidget *field, const QString &text);

/// The text that the window's message popup shows, once it is visible; empty after 5 seconds.
QString shownMessage(const QWidget *window);

/// Whether the popup's last message was an error.
bool isErrorMessage(const QWidget *window);

/// Whether the popup is on the screen.
bool isMessageVisible(const QWidget *window);

} // namespace driver
