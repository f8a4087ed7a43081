#include "widgets/HardwareTypeComboBox.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLoggingCategory>

namespace {
Q_LOGGING_CATEGORY(logHardwareType, "zel.widgets.hardwaretype")
}

HardwareTypeComboBox::HardwareTypeComboBox(QWidget *parent)
    : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(NoInsert);
    // What is typed is what is meant: a completer would make 123 of a typed 12 once there is a 123.
    setCompleter(nullptr);
    connect(lineEdit(), &QLineEdit::editingFinished, this,
            &HardwareTypeComboBox::insertNewHardwareType);
}

void HardwareTypeComboBox::setHardwareType(const QString &label, quint32 value)
{
    if (selectIndex(findData(value))) {
        return;
    }
    insertItem(0, label, value);
    setCurrentIndex(0);
}

bool HardwareTypeComboBox::event(QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *const press = static_cast<QKeyEvent *>(event);
        qCDebug(logHardwareType, "Key press: 0x%08x", static_cast<unsigned int>(press->key()));
        // Kept from the line edit, so that the combo box never adds the text by its own rules.
        if (press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter) {
            event->ignore();
            return true;
        }
    }
    return QComboBox::event(event);
}

void HardwareTypeComboBox::showPopup()
{
    QComboBox::showPopup();
    // Opening the list ended the editing, which may have selected another item than the one that
    // the list was opened with.
    view()->setCurrentIndex(model()->index(currentIndex(), modelColumn(), rootModelIndex()));
}

void HardwareTypeComboBox::insertNewHardwareType()
{
    const QString typed = lineEdit()->text();
    bool isNumber = false;
    const quint32 value = typed.toUInt(&isNumber);
    if (!isNumber) {
        if (!selectIndex(findText(typed, Qt::MatchExactly | Qt::MatchCaseSensitive))) {
            emit errorOccurred(tr("The inserted hardware type must be uint 32."));
        }
        return;
    }
    if (!selectIndex(findData(value))) {
        // Deliberately searches for the number a second time before it adds it.
        setHardwareType(typed, value);
    }
}

bool HardwareTypeComboBox::selectIndex(int index)
{
    if (index < 0) {
        return false;
    }
    setCurrentIndex(index);
    return true;
}
