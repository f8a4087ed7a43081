#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <functional>
#include <optional>
#include <random>
#include <vector>

namespace fuzz {

/// Any tree of tag-length-value entries, sound or not, to be changed at random.
class TlvTree final
{
public:
    /// Changes some bytes of a value.
    using ValueMutator = std::function<QByteArray(QByteArray)>;

    /// Takes the entries in @p body for what their tags promise. Lengths that lead out of the entry
    /// around them are cut.
    explicit TlvTree(const QByteArray &body);

    /// Makes one change: to a value, a tag, a declared length, or the place, number or order of
    /// entries.
    void mutate(std::minstd_rand &random, const ValueMutator &mutateValue);

    /// The bytes of the tree. All lengths are right, save the one that the last change forged.
    [[nodiscard]] QByteArray bytes() const;

private:
    struct Node
    {
        quint32 tag = 0;
        bool isFrame = false;
        std::vector<Node> children;
        QByteArray value;                    ///< Of a leaf.
        std::optional<quint32> forgedLength; ///< What it declares instead of its length.
    };
    /// Where an entry stands.
    struct Place
    {
        std::vector<Node> *siblings;
        std::size_t index;
    };

    static std::vector<Node> parse(const QByteArray &bytes, int depth);
    static QByteArray bytesOf(const std::vector<Node> &nodes);
    static void collect(std::vector<Node> &nodes, std::vector<Place> &places);
    static void changeNode(Node &node, std::minstd_rand &random, const ValueMutator &mutateValue);
    void changePlace(const Place &place, const std::vector<Place> &places,
                     std::minstd_rand &random) const;

    std::vector<Node> m_roots;
};

} // namespace fuzz
