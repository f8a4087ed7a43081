// Text from the clipboard, pasted into the address field and the cells of the rule tables, and text
// from packages, copied from these tables.

#include "fuzz/Expect.h"
#include "fuzz/Scratch.h"
#include "fuzz/Target.h"
#include "fuzz/Text.h"
#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"
#include "views/MaskValidationTableView.h"
#include "views/TokenValidationTableView.h"
#include "widgets/FirmwareAddressLineEdit.h"
#include "widgets/WholeTextValidator.h"

#include <QAbstractItemDelegate>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSortFilterProxyModel>
#include <QStringList>
#include <QStyleOptionViewItem>

#include <algorithm>

namespace {

using fuzz::expect;

void press(QWidget *widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(widget, &event);
}

void paste(QWidget *widget, const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    press(widget, Qt::Key_V, Qt::ControlModifier);
}

QString copied(QWidget *widget)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("nothing copied"));
    press(widget, Qt::Key_C, Qt::ControlModifier);
    return QGuiApplication::clipboard()->text();
}

bool isHexDigit(QChar character)
{
    const ushort code = character.unicode();
    return (code >= '0' && code <= '9') || (code >= 'A' && code <= 'F')
           || (code >= 'a' && code <= 'f');
}

bool isAddressSoFar(const QString &text)
{
    return text.size() <= 8 && std::all_of(text.begin(), text.end(), &isHexDigit);
}

bool isLetter(const QByteArray &text)
{
    return text.size() == 1 && QChar::fromLatin1(text.at(0)).toLower() >= QLatin1Char('a')
           && QChar::fromLatin1(text.at(0)).toLower() <= QLatin1Char('z');
}

/// The first part between prefixes that holds more than blanks and tabs.
QString firstPart(const QString &prefixed)
{
    int start = 0;
    while (start <= prefixed.size()) {
        int end = prefixed.indexOf(QLatin1String("0x"), start);
        end = end < 0 ? prefixed.size() : end;
        QString part = prefixed.mid(start, end - start);
        QString visible = part;
        visible.remove(QLatin1Char(' ')).remove(QLatin1Char('\t'));
        if (!visible.isEmpty()) {
            return part;
        }
        start = end + 2;
    }
    return {};
}

/// A rule table over its model, as the window puts them together, with an editor of each column
/// that stays open: the look of the table would make opening one the greater part of the work.
template <typename View, typename Model>
class Table final
{
    Q_DISABLE_COPY_MOVE(Table)

public:
    explicit Table(QWidget *editorParent)
    {
        m_proxy.setSourceModel(&m_model);
        m_view.setModel(&m_proxy);
        m_view.sortByColumn(0, Qt::AscendingOrder);
        m_model.insertRows(0, 1);
        for (int column = 0; column + 1 < m_model.columnCount(); ++column) {
            addEditor(column, editorParent);
        }
    }

    /// Pastes @p text into a cell of the only rule, as @p rule has it, and Enter. What becomes of
    /// the rule.
    template <typename Rule>
    [[nodiscard]] Rule pasted(const Rule &rule, int column, const QString &text, bool replacesAll)
    {
        m_model.setRules({rule});
        QWidget *const editor = m_editors.at(column);
        m_view.itemDelegateForColumn(column)->setEditorData(editor, m_proxy.index(0, column));
        // The text of a spin box is in a line edit of its own.
        auto *lineEdit = qobject_cast<QLineEdit *>(editor);
        if (lineEdit == nullptr) {
            lineEdit = editor->findChild<QLineEdit *>();
        }
        if (replacesAll) {
            lineEdit->selectAll();
        } else {
            lineEdit->deselect();
        }
        paste(lineEdit, text);
        press(editor, Qt::Key_Return);
        QCoreApplication::sendPostedEvents();
        return m_model.rules().constFirst();
    }

    /// Copies all rows of @p rules.
    template <typename Rules>
    void expectCopied(const Rules &rules)
    {
        m_model.setRules(rules);
        m_view.selectAll();
        expect(copied(&m_view) == expectedCopy(),
               "whole rows are copied, without the delete column");
    }

private:
    void addEditor(int column, QWidget *parent)
    {
        QAbstractItemDelegate *const delegate = m_view.itemDelegateForColumn(column);
        QWidget *const editor =
            delegate->createEditor(parent, QStyleOptionViewItem(), m_proxy.index(0, column));
        editor->installEventFilter(delegate);
        QObject::connect(delegate, &QAbstractItemDelegate::commitData, editor,
                         [this, delegate, editor, column](QWidget *committed) {
                             if (committed == editor) {
                                 delegate->setModelData(editor, &m_proxy, m_proxy.index(0, column));
                             }
                         });
        m_editors.append(editor);
    }

    /// A line of each row, with its cells in their order.
    [[nodiscard]] QString expectedCopy() const
    {
        QString text;
        for (int row = 0; row < m_proxy.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < m_editors.size(); ++column) {
                cells.append(m_proxy.index(row, column).data().toString().simplified());
            }
            text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
        }
        return text;
    }

    Model m_model;
    QSortFilterProxyModel m_proxy;
    View m_view;
    QList<QWidget *> m_editors;
};

/// What the inputs are tried on. Never destroyed: the application that it needs is not, either.
struct Bench
{
    Bench()
    {
        const QRegularExpression pattern(QStringLiteral("^[A-Fa-f0-9]{1,8}$"));
        for (FirmwareAddressLineEdit *field : {&address, &otherAddress}) {
            field->setValidator(new WholeTextValidator(pattern, field));
        }
        QObject::connect(&address, &FirmwareAddressLineEdit::errorOccurred, &address,
                         [this] { ++errors; });
    }

    FirmwareAddressLineEdit address;
    FirmwareAddressLineEdit otherAddress;
    int errors = 0;
    QWidget editorParent;
    Table<MaskValidationTableView, MaskValidationModel> masks{&editorParent};
    Table<TokenValidationTableView, TokenValidationModel> tokens{&editorParent};
};

Bench &bench()
{
    static auto *const instance = new Bench;
    return *instance;
}

void expectAddressRules(const QString &text, bool replacesAll)
{
    const QString before = QStringLiteral("12aB");
    FirmwareAddressLineEdit &field = bench().address;
    field.setText(before);
    field.deselect();
    if (replacesAll) {
        field.selectAll();
    }
    bench().errors = 0;
    paste(&field, text);
    if (text.startsWith(QLatin1String("0x"))) {
        const QString address = firstPart(text);
        const bool isAddress = !address.isEmpty() && isAddressSoFar(address);
        expect(field.text() == (isAddress ? address : before), "the first address is taken");
        expect(bench().errors == (isAddress ? 0 : 1), "what is no address is reported");
    } else {
        expect(isAddressSoFar(field.text()), "the field holds digits of an address");
        expect(bench().errors == 0, "an ordinary paste reports nothing");
    }

    const QString address = field.text();
    expect(copied(&field) == QLatin1String("0x") + address, "an address is copied with its prefix");
    if (!address.isEmpty()) {
        paste(&bench().otherAddress, QGuiApplication::clipboard()->text());
        expect(bench().otherAddress.text() == address, "a copied address can be pasted");
    }
}

void expectMaskCellRules(int column, const QString &text, bool replacesAll)
{
    const MaskValidationRule before = {7, 8, "mask"};
    const MaskValidationRule rule = bench().masks.pasted(before, column, text, replacesAll);
    expect(!rule.mask.isEmpty(), "a mask is not empty");
    expect(column == 0 || rule.parameter == before.parameter, "other cells stay");
    expect(column == 1 || rule.index == before.index, "other cells stay");
    expect(column == 2 || rule.mask == before.mask, "other cells stay");
}

void expectTokenCellRules(int column, const QString &text, bool replacesAll)
{
    const TokenValidationRule before = {"T", "value"};
    const TokenValidationRule rule = bench().tokens.pasted(before, column, text, replacesAll);
    expect(isLetter(rule.token), "a token is a letter");
    expect(column == 0 || rule.token == before.token, "other cells stay");
    expect(!rule.value.isEmpty(), "a value is not empty");
    expect(column == 1 || rule.value == before.value, "other cells stay");
}

/// Rules as a package may bring them, a line of @p bytes each.
void expectCopyRules(const QByteArray &bytes)
{
    QList<MaskValidationRule> masks;
    QList<TokenValidationRule> tokens;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray &line : lines) {
        const auto number = static_cast<quint16>(line.size());
        masks.append({number, static_cast<quint16>(~number), line});
        tokens.append({line.left(line.size() / 2), line.mid(line.size() / 2)});
    }
    bench().masks.expectCopied(masks);
    bench().tokens.expectCopied(tokens);
}

} // namespace

// NOLINTNEXTLINE(readability-non-const-parameter): The engine gives it so.
int LLVMFuzzerInitialize(int *argumentCount, char ***arguments)
{
    (void)fuzz::scratchFolder();
    fuzz::expectNoWarnings();
    // Lives as long as the process: the engine ends it without returning to a main().
    static auto *const application = new QApplication(*argumentCount, *arguments);
    Q_UNUSED(application)
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2) {
        return 0;
    }
    const bool replacesAll = data[0] % 16 >= 8;
    const QString text = fuzz::textOf(data + 1, size - 1);
    switch (data[0] % 8) {
    case 0:
        expectCopyRules(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
        break;
    case 1:
    case 2:
    case 3:
        expectMaskCellRules(data[0] % 8 - 1, text, replacesAll);
        break;
    case 4:
    case 5:
        expectTokenCellRules(data[0] % 8 - 4, text, replacesAll);
        break;
    default:
        expectAddressRules(text, replacesAll);
        break;
    }
    return 0;
}
