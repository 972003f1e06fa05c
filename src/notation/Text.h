#pragma once

#include "model/Object.h"
#include "notation/LogFont.h"

#include <QString>
#include <array>
#include <cstdint>

namespace corrieval {

// A text of the older Glenmarch tunes (left, centre and right heading). It only carries its data
// to the conversion, which makes text areas of it.
class CText : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum StyleBit : std::int32_t { Bold = 1, Italic = 2, Underline = 4 };
    static constexpr std::int32_t CurrentRecordVersion = 3;

    CText();

    // The font as the older program made it from the point size, face and style. Reading the
    // record calls this.
    void RebuildFont();

    float X = 0;
    float Y = 0;
    float Width = 0;
    float Height = 0;
    double PointSize = 8.0;
    // Layout words of the older program, which nothing here interprets; kept for the record.
    std::array<std::int32_t, 4> LayoutWords{};
    QString Face = QStringLiteral("Arial");
    QString Text = QStringLiteral("Text");
    std::int32_t RecordVersion = CurrentRecordVersion;
    std::int32_t Style = 0;
    double Scale = 1.0;
    LogFont Font;
};

} // namespace corrieval
