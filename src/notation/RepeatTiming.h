#pragma once

#include "model/ScoObj.h"

#include <QString>

#include <cstdint>

namespace corrieval {

class CStaveArea;

// A first-and-second-time bracket: first-time section from start to middle, second-time from
// middle to end, possibly over several systems. Positions are fractions of a stave's content
// width so that the marker follows the layout.
class CRepeatTiming : public CScoObj {
    CORRIEVAL_DECLARE_CLASS()

public:
    CStaveArea* Area = nullptr; // the owner
    float StartPosition = 0;
    float MiddlePosition = 0;
    float EndPosition = 0;
    std::int32_t StartStave = 0; // index of a stave group in the area
    std::int32_t MiddleStave = 0;
    std::int32_t EndStave = 0;
    std::int32_t RepeatId = 0;
    QString FirstMarker = QStringLiteral("1");
    QString SecondMarker = QStringLiteral("2");
};

} // namespace corrieval
