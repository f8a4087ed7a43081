#pragma once

#include <QtGlobal>

class QByteArray;

namespace tlv {

struct PackageRecord;

/// What became of parsing a body.
enum class ParseResult : quint8 {
    Success = 0,
    WrongRootTag = 1,    ///< The first tag is not the package's.
    WrongRootLength = 2, ///< The root's entry does not fill the body exactly.
    LengthMismatch = 3,  ///< A declared length does not match the bytes read for it.
    MissingTag = 4,      ///< An expected tag is missing at its place.
    UnknownSection = 5,  ///< A section has a tag that no section has.
};

/// The tree of tag-length-value entries that holds the sections of @p record. A byte array is never
/// written in its null form: an empty one has the count 0.
[[nodiscard]] QByteArray serializeBody(const PackageRecord &record);

/// Fills @p record from the tree of entries in @p body. The rules are emptied first; what the body
/// leaves out otherwise keeps its value. On failure the record may be partly filled.
///
/// The body is taken by value: what is left of it in the end is the image, so that the two need not
/// be held at the same time.
[[nodiscard]] ParseResult parseBody(QByteArray body, PackageRecord &record);

} // namespace tlv
