#pragma once

#include <QAbstractTableModel>
#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QVariant>

#include <algorithm>
#include <limits>
#include <utility>
#include <variant>
#include <vector>

/// Editable table over a list of rules: one row a rule, one column a field of it, and after the
/// fields one column without data, where a view puts its delete button.
///
/// The rows keep their order; it is the order in which the rules are written to a package. Nothing
/// is checked here: the editors limit what can be typed.
template <typename Rule>
class RuleTableModel : public QAbstractTableModel
{
    Q_DISABLE_COPY_MOVE(RuleTableModel)

public:
    [[nodiscard]] QList<Rule> rules() const { return m_rules; }

    /// Replaces all rows.
    void setRules(QList<Rule> rules)
    {
        beginResetModel();
        m_rules = std::move(rules);
        endResetModel();
    }

    /// A rule has no children.
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : m_rules.size();
    }

    [[nodiscard]] int columnCount(const QModelIndex & /*parent*/ = {}) const override
    {
        return static_cast<int>(m_fields.size()) + 1;
    }

    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override
    {
        if ((role != Qt::DisplayRole && role != Qt::EditRole) || !isField(index)) {
            return {};
        }
        const Rule &rule = m_rules.at(index.row());
        return std::visit([&rule](auto member) { return toVariant(rule.*member); },
                          field(index.column()).member);
    }

    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole || !isFieldColumn(section)) {
            return {};
        }
        return QCoreApplication::translate(metaObject()->className(), field(section).header);
    }

    /// Numbers are cut to their low 16 bits. False, and nothing changed, for another role than the
    /// edit role, the delete column or a row that is not there.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override
    {
        if (role != Qt::EditRole || !isField(index)) {
            return false;
        }
        Rule &rule = m_rules[index.row()];
        std::visit([&rule, &value](auto member) { assign(rule.*member, value); },
                   field(index.column()).member);
        emit dataChanged(index, index, {Qt::EditRole});
        return true;
    }

    /// Every cell is editable, the delete column too: its delegate opens no editor. That the root
    /// accepts drops is deliberate.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return index.isValid() ? QAbstractTableModel::flags(index) | Qt::ItemIsEditable
                               : Qt::ItemIsDropEnabled;
    }

    /// Inserts @p count new rules. A position outside the list counts as its nearer end.
    bool insertRows(int row, int count, const QModelIndex &parent = {}) override
    {
        if (parent.isValid()) {
            return false;
        }
        if (count < 1) {
            return true;
        }
        const int first = std::clamp(row, 0, m_rules.size());
        beginInsertRows(parent, first, first + count - 1);
        for (int inserted = 0; inserted < count; ++inserted) {
            m_rules.insert(first, Rule());
        }
        endInsertRows();
        return true;
    }

    /// Removes what lies inside the list. Deliberately true, with the notifications as asked for,
    /// also when the rows are not all there or none is.
    bool removeRows(int row, int count, const QModelIndex &parent = {}) override
    {
        if (parent.isValid()) {
            return false;
        }
        if (count < 1) {
            return true;
        }
        const bool isInside = row >= 0 && row < m_rules.size();
        const qint64 last = qint64{row} + count - 1;
        // A proxy that is told of rows that never were ruins its mapping. Below a cell it has none.
        beginRemoveRows(isInside ? parent : createIndex(0, 0), row,
                        static_cast<int>(std::min<qint64>(last, std::numeric_limits<int>::max())));
        if (isInside) {
            const auto begin = m_rules.begin() + row;
            m_rules.erase(begin, begin + std::min(count, m_rules.size() - row));
        }
        endRemoveRows();
        return true;
    }

protected:
    /// One column: its header, a source text to translate in the model's class, and what it shows.
    struct Field
    {
        const char *header;
        std::variant<quint16 Rule::*, QByteArray Rule::*> member;
    };

    RuleTableModel(std::vector<Field> fields, QList<Rule> rules, QObject *parent)
        : QAbstractTableModel(parent)
        , m_fields(std::move(fields))
        , m_rules(std::move(rules))
    {
    }

private:
    static QVariant toVariant(quint16 number) { return int{number}; }
    static QVariant toVariant(const QByteArray &text) { return text; }

    static void assign(quint16 &number, const QVariant &value)
    {
        number = static_cast<quint16>(value.toUInt());
    }
    static void assign(QByteArray &text, const QVariant &value) { text = value.toByteArray(); }

    [[nodiscard]] const Field &field(int column) const
    {
        return m_fields[static_cast<std::size_t>(column)];
    }
    [[nodiscard]] bool isFieldColumn(int column) const
    {
        return column >= 0 && column < static_cast<int>(m_fields.size());
    }
    [[nodiscard]] bool isField(const QModelIndex &index) const
    {
        return index.isValid() && index.row() < m_rules.size() && isFieldColumn(index.column());
    }

    std::vector<Field> m_fields;
    QList<Rule> m_rules;
};
