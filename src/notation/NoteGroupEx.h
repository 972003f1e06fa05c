#pragma once

#include "notation/NoteBase.h"

#include <memory>

namespace corrieval {

// Notes beamed together under one stem line.
class CNoteGroupEx : public CNoteBase {
    CORRIEVAL_DECLARE_CLASS()

public:
    bool IsMusicHolder() const override { return true; }
    bool HitTestNote(float x, float y) const override;
    bool IsWithin(float x, float y, float width, float height) const override;
    // An empty group: whoever copies adds copies of the notes.
    std::unique_ptr<CNoteBase> Clone() const override;
};

} // namespace corrieval
