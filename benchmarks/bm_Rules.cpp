#include "benchmarks/support/Samples.h"
#include "benchmarks/support/Table.h"
#include "tlv/PackageBody_p.h"
#include "tlv/PackageRecord.h"
#include "tlv/PackageTags.h"

#include <QCoreApplication>
#include <QDataStream>

#include <algorithm>
#include <cstring>
#include <string>

/// Serialising and parsing rules. Half of them are mask rules, half token rules.

namespace {

using table::MeasureRound;

constexpr int kCounts[] = {1'000, 10'000, 100'000};
constexpr table::Unit kNanosecondsARule = {"ns a rule", 1e-9};
constexpr double kLargestShare = 200e-9;

tlv::PackageRecord recordWith(int count)
{
    tlv::PackageRecord record;
    record.sections = {tlv::kRulesSectionTag};
    record.maskRules = samples::maskRules(count / 2);
    record.tokenRules = samples::tokenRules(count / 2);
    return record;
}

/// So many repetitions that each count makes for the same work in a round.
int timesFor(int count)
{
    return kCounts[2] / count;
}

void serialise(const tlv::PackageRecord &record)
{
    if (tlv::serializeBody(record).isEmpty()) {
        qFatal("Nothing was serialised.");
    }
}

void parse(const QByteArray &body)
{
    tlv::PackageRecord record;
    if (tlv::parseBody(body, record) != tlv::ParseResult::Success) {
        qFatal("The body could not be parsed.");
    }
}

/// Writes the entries of the rules, and nothing else, straight to the stream.
QByteArray serialisePlainly(const tlv::PackageRecord &record, int size)
{
    using namespace tlv;
    QByteArray bytes;
    bytes.reserve(size);
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const MaskValidationRule &rule : record.maskRules) {
        stream << kMaskRuleTag << quint32{0} << kMaskKeyTag << kIntegerLength
               << quint32{rule.parameter} << kMaskTag << rule.mask;
    }
    for (const TokenValidationRule &rule : record.tokenRules) {
        stream << kTokenRuleTag << quint32{0} << kTokenTag << rule.token << kTokenValueTag
               << rule.value;
    }
    return bytes;
}

/// Reads what serialisePlainly() writes.
void parsePlainly(const QByteArray &bytes, int count)
{
    QDataStream stream(bytes);
    QList<MaskValidationRule> maskRules;
    QList<TokenValidationRule> tokenRules;
    quint32 tag = 0;
    quint32 length = 0;
    quint32 key = 0;
    for (int number = 0; number < count / 2; ++number) {
        MaskValidationRule rule;
        stream >> tag >> length >> tag >> length >> key >> tag >> rule.mask;
        rule.parameter = static_cast<quint16>(key >> 16);
        rule.index = static_cast<quint16>(key);
        maskRules.append(rule);
    }
    for (int number = 0; number < count / 2; ++number) {
        TokenValidationRule rule;
        stream >> tag >> length >> tag >> rule.token >> tag >> rule.value;
        tokenRules.append(rule);
    }
    if (stream.status() != QDataStream::Ok) {
        qFatal("The stream ended early.");
    }
}

/// How the time for a rule grows with ten times as many.
MeasureRound growth(const std::function<table::Work(int count)> &workFor, int count)
{
    const int more = 10 * count;
    const MeasureRound round = table::inTurn(
        workFor(more),
        [work = workFor(count)] {
            for (int time = 0; time < 10; ++time) {
                work();
            }
        },
        timesFor(more));
    return [round, more] {
        const table::Round total = round();
        return table::Round{total.ours / more, total.floor / more};
    };
}

/// The time for a rule against that of @p floorFor.
MeasureRound share(const std::function<table::Work(int count)> &workFor,
                   const std::function<table::Work(int count)> &floorFor, int count)
{
    const MeasureRound round = table::inTurn(workFor(count), floorFor(count), timesFor(count));
    return [round, count] {
        const table::Round total = round();
        return table::Round{total.ours / count, total.floor / count};
    };
}

struct Direction
{
    std::string name;
    std::function<table::Work(int count)> work;
    std::function<table::Work(int count)> plainLoop;
};

table::Work copying(int count)
{
    const QByteArray body = tlv::serializeBody(recordWith(count));
    return [body] {
        QByteArray copy(body.size(), Qt::Uninitialized);
        std::memcpy(copy.data(), body.constData(), static_cast<std::size_t>(body.size()));
    };
}

Direction serialising()
{
    return {"serialise",
            [](int count) -> table::Work {
                return [record = recordWith(count)] { serialise(record); };
            },
            [](int count) -> table::Work {
                const tlv::PackageRecord record = recordWith(count);
                const int size = tlv::serializeBody(record).size();
                return [record, size] { serialisePlainly(record, size); };
            }};
}

Direction parsing()
{
    return {"parse",
            [](int count) -> table::Work {
                return [body = tlv::serializeBody(recordWith(count))] { parse(body); };
            },
            [](int count) -> table::Work {
                return [bytes = serialisePlainly(recordWith(count), 0), count] {
                    parsePlainly(bytes, count);
                };
            }};
}

void addRows(const Direction &direction)
{
    constexpr int kRounds = 31;
    for (const int count : kCounts) {
        table::addRow(
            direction.name + " " + std::to_string(count) + " rules, against a plain loop",
            kNanosecondsARule, table::atMostAbove(kLargestShare, "200 ns a rule more"),
            [direction, count] { return share(direction.work, direction.plainLoop, count); },
            kRounds);
        table::addRow(
            direction.name + " " + std::to_string(count) + " rules, against copying the bytes",
            kNanosecondsARule, table::noGoal(),
            [direction, count] { return share(direction.work, copying, count); }, kRounds);
    }
    for (const int count : {kCounts[0], kCounts[1]}) {
        table::addRow(
            direction.name + " " + std::to_string(10 * count) + " rules, against "
                + std::to_string(count),
            kNanosecondsARule, table::atMost(1.1),
            [direction, count] { return growth(direction.work, count); }, kRounds);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    addRows(serialising());
    addRows(parsing());
    return table::run(argc, argv);
}
