#include "common/Scale.h"

#include <cmath>

namespace {
constexpr double kReferenceDpi = 96.0;
}

Scale::Scale(double logicalDpi)
    : m_factor(logicalDpi / kReferenceDpi)
{
}

int Scale::px(double designed) const
{
    return static_cast<int>(std::lround(designed * m_factor));
}
