#pragma once

#include "model/StaveArea.h"

#include <memory>

namespace corrieval {

class CStave;

// The legend of piobaireachd abbreviation marks: a stave area of one group of two staves, the
// mark written above and what it stands for played below. It never sounds.
class CAbbreviationArea : public CStaveArea {
    CORRIEVAL_DECLARE_CLASS()

public:
    CAbbreviationArea();

    // A legend cannot be copied.
    std::unique_ptr<CPageArea> Clone() const override { return nullptr; }

    CStave* WrittenStave = nullptr;
    CStave* PlayedStave = nullptr;
};

} // namespace corrieval
