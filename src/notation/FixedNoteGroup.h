#pragma once

#include "notation/NoteBase.h"

#include <QString>

#include <memory>

namespace corrieval {

// A named movement: its gracenotes in playing order.
class CFixedNoteGroup : public CNoteBase {
    CORRIEVAL_DECLARE_CLASS()

public:
    bool HitTestNote(float x, float y) const override;
    bool IsWithin(float x, float y, float width, float height) const override;
    std::unique_ptr<CNoteBase> Clone() const override;

    QString Name; // display name of the movement; empty when read from a file
};

} // namespace corrieval
