#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <vector>

/// A small package with all kinds of entries, and what a reader makes of each of its bytes.
namespace sample {

/// What a reader makes of some bytes of a body.
enum class Part {
    Checked,    ///< Tag, length or count that must be as it is.
    PassedOver, ///< Tag or length that may be anything.
    Bool,       ///< Content: false for 0, true for all else.
    Content,    ///< Content that may be anything.
};

/// Some bytes that belong together.
struct Piece
{
    Part part;
    QByteArray bytes;
    bool isLength; ///< A declared length, or a count in its place.
};

/// The body, piece by piece.
[[nodiscard]] const std::vector<Piece> &pieces();

[[nodiscard]] QByteArray body();

/// The package file around the body.
[[nodiscard]] QByteArray package();

/// Where a length stands in the bytes that hold it.
struct LengthField
{
    int offset;
    Part part;
};

/// The lengths in the body.
[[nodiscard]] std::vector<LengthField> lengthFields();

/// Byte counts of the body's beginnings that end with a whole section, or with the root's header.
[[nodiscard]] std::vector<int> sectionEnds();

/// @p bytes with one byte changed: each of its bits alone, and to 00 and FF where it is not so.
struct Change
{
    int offset;
    QByteArray bytes;
};
[[nodiscard]] std::vector<Change> byteChanges(const QByteArray &bytes);

/// @p bytes with the four bytes at the two offsets exchanged.
[[nodiscard]] QByteArray exchanged(const QByteArray &bytes, int left, int right);

} // namespace sample
