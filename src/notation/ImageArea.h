#pragma once

#include "model/PageArea.h"

#include <QString>

#include <cstdint>

namespace corrieval {

// A page area showing a picture from the image library.
class CImageArea : public CPageArea {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum State : std::int32_t { Linked = 0, NoImage = -1 };

    CImageArea();

    QString Path;
    std::int32_t ImageState = NoImage;
};

} // namespace corrieval
