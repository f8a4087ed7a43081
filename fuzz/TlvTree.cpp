#include "fuzz/TlvTree.h"

#include "tests/tlv/Wire.h"
#include "tlv/PackageTags.h"

#include <QtEndian>

#include <algorithm>
#include <iterator>
#include <utility>

namespace fuzz {

namespace {

using namespace tlv;

constexpr int kDeepest = 8;
constexpr std::size_t kMostNodes = 200;

constexpr quint32 kFrameTags[] = {
    kPackageTag,
    kRulesSectionTag,
    kMaskRuleListTag,
    kMaskRuleTag,
    kTokenRuleListTag,
    kTokenRuleTag,
    kOptionATag,
    kOptionBTag,
    kSoftwareOptionsTag,
    kHardwareSectionTag,
    kHardwareTag,
    kFirmwareTag,
    kFirmwareFileSectionTag,
};
constexpr quint32 kLeafTags[] = {
    kMaskKeyTag,          kMaskTag,          kTokenTag,
    kTokenValueTag,       kOptionEnabledTag, kMinimumVersionTag,
    kMaximumVersionTag,   kLayoutVersionTag, kMinimumHardwareTag,
    kMaximumHardwareTag,  kHardwareTypeTag,  kFirmwareAddressTag,
    kFirmwareImageTag,    kFirmwareSizeTag,  kFirmwareFileNameTag,
    kFirmwareFilePathTag,
};
constexpr quint32 kTellingNumbers[] = {0,          1,          4,          8,          48,
                                       82,         0xFFFF,     0x10000,    0x7FFFFFFF, 0x80000000,
                                       0xFFFFFFF7, 0xFFFFFFF8, 0xFFFFFFFE, 0xFFFFFFFF};

std::size_t below(std::minstd_rand &random, std::size_t limit)
{
    return random() % limit;
}

template <std::size_t N>
quint32 oneOf(std::minstd_rand &random, const quint32 (&values)[N])
{
    return values[below(random, N)];
}

bool isFrameTag(quint32 tag)
{
    return std::find(std::begin(kFrameTags), std::end(kFrameTags), tag) != std::end(kFrameTags);
}

} // namespace

TlvTree::TlvTree(const QByteArray &body)
    : m_roots(parse(body, 0))
{
}

std::vector<TlvTree::Node> TlvTree::parse(const QByteArray &bytes, int depth)
{
    std::vector<Node> nodes;
    int position = 0;
    while (bytes.size() - position >= static_cast<int>(kHeaderLength)) {
        const char *const header = bytes.constData() + position;
        position += static_cast<int>(kHeaderLength);
        const auto left = static_cast<quint32>(bytes.size() - position);
        const auto declared = qFromBigEndian<quint32>(header + kIntegerLength);
        const auto length = static_cast<int>(std::min(declared, left));

        Node node;
        node.tag = qFromBigEndian<quint32>(header);
        node.isFrame = depth < kDeepest && isFrameTag(node.tag);
        const QByteArray payload = bytes.mid(position, length);
        if (node.isFrame) {
            node.children = parse(payload, depth + 1);
        } else {
            node.value = payload;
        }
        nodes.push_back(std::move(node));
        position += length;
    }
    return nodes;
}

QByteArray TlvTree::bytesOf(const std::vector<Node> &nodes)
{
    QByteArray bytes;
    for (const Node &node : nodes) {
        const QByteArray payload = node.isFrame ? bytesOf(node.children) : node.value;
        const auto length = static_cast<quint32>(payload.size());
        bytes += wire::forged(node.tag, node.forgedLength.value_or(length), payload);
    }
    return bytes;
}

QByteArray TlvTree::bytes() const
{
    return bytesOf(m_roots);
}

void TlvTree::collect(std::vector<Node> &nodes, std::vector<Place> &places)
{
    for (std::size_t index = 0; index < nodes.size(); ++index) {
        places.push_back({&nodes, index});
        collect(nodes[index].children, places);
    }
}

void TlvTree::mutate(std::minstd_rand &random, const ValueMutator &mutateValue)
{
    std::vector<Place> places;
    collect(m_roots, places);
    if (places.empty()) {
        m_roots.push_back({kPackageTag, true, {}, {}, {}});
        return;
    }
    const Place place = places[below(random, places.size())];
    if (below(random, 3) == 0) {
        changePlace(place, places, random);
    } else {
        changeNode((*place.siblings)[place.index], random, mutateValue);
    }
}

void TlvTree::changeNode(Node &node, std::minstd_rand &random, const ValueMutator &mutateValue)
{
    switch (below(random, 8)) {
    case 0:
        node.tag = oneOf(random, kLeafTags);
        break;
    case 1:
        node.tag = oneOf(random, kFrameTags);
        break;
    case 2:
        node.tag ^= 1U << below(random, 32);
        break;
    case 3:
        node.forgedLength = oneOf(random, kTellingNumbers);
        break;
    case 4:
        node.forgedLength = static_cast<quint32>(node.value.size() + 4 - int(below(random, 9)));
        break;
    case 5:
        // The form of a null byte array.
        node.value.clear();
        node.children.clear();
        node.forgedLength = 0xFFFFFFFF;
        break;
    case 6:
        node.value = wire::u32(oneOf(random, kTellingNumbers));
        break;
    default:
        node.value = mutateValue(node.value);
        break;
    }
}

void TlvTree::changePlace(const Place &place, const std::vector<Place> &places,
                          std::minstd_rand &random) const
{
    std::vector<Node> &siblings = *place.siblings;
    const auto here = siblings.begin() + static_cast<std::ptrdiff_t>(place.index);
    const Place &other = places[below(random, places.size())];
    switch (below(random, 5)) {
    case 0:
        siblings.erase(here);
        break;
    case 1:
        std::swap(*here, siblings[below(random, siblings.size())]);
        break;
    case 2:
        siblings.insert(here, {oneOf(random, kFrameTags), true, {}, {}, {}});
        break;
    case 3:
        siblings.insert(here, {oneOf(random, kLeafTags), false, {}, wire::u32(0), {}});
        break;
    default:
        if (places.size() < kMostNodes) {
            Node copy = (*other.siblings)[other.index];
            siblings.insert(here, std::move(copy));
        }
        break;
    }
}

} // namespace fuzz
