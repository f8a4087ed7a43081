#pragma once

#include <QMetaType>

namespace commonData {

/// Which files a file dialog offers.
enum FileType {
    AnyFile = 0,
    BinaryFile = 1,
};

} // namespace commonData

Q_DECLARE_METATYPE(commonData::FileType)
