#pragma once

#include "model/ScoObj.h"

#include <QPainterPath>
#include <QString>

#include <cstdint>
#include <functional>

namespace corrieval {

class CBarEx;
class CNoteEx;
class CStave;
class CStaveArea;

// One note as the written play order meets it: the note and the bar it sounds in.
struct PlayedNote {
    CNoteEx* Note = nullptr;
    const CBarEx* Bar = nullptr;
};

// The notes of a tune in written play order, part by part (a part is a stave index of the
// systems). The tune sequence offers this so that repeat markers can stamp the notes they
// bracket without knowing how play lists are kept.
class WrittenNotes {
public:
    static constexpr int PartCount = 4;

    virtual ~WrittenNotes() = default;
    // Calls `visit` with each note of the part in order until it returns false.
    virtual void VisitPart(int part, const std::function<bool(const PlayedNote&)>& visit) const = 0;
};

// A first-and-second-time bracket: first-time section from start to middle, second-time from
// middle to end, possibly over several systems. Positions are fractions of a stave's content
// width so that the marker follows the layout. The marker holds no notes: it stamps the notes
// it brackets with its id and section, and playback reads the notes.
class CRepeatTiming : public CScoObj {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum Leg : int { NoLeg = 0, StartLeg = 1, MiddleLeg = 2, EndLeg = 3 };

    // For reading files.
    CRepeatTiming() = default;
    // A marker over `bar` (first time) and the bar after it (second time), or with `wholeLine`
    // over whole lines from the bar's system, the first time starting at `rightEdge` when that
    // is above 0. Stave indexes count from `staveOffset`. The area takes the marker afterwards
    // and gives it its id; stamping follows then.
    CRepeatTiming(CStaveArea* area, const CBarEx& bar, bool wholeLine, std::int32_t staveOffset,
                  float rightEdge);

    // A click on its line selects the marker, which then draws in blue.
    bool IsSelectable() const override { return true; }

    // Which leg, if any, lies under the point: within 0.03 inch across and within its height.
    int LegAt(float x, float y) const;
    // Whether the point lies on the bracket line, within 0.03 inch below its top.
    bool LineAt(float x, float y) const;
    // 1 or 2 when the point is on the first or second text, else 0.
    int TextAt(float x, float y) const;
    // Any part of the marker under the point.
    bool HitAt(float x, float y) const;
    // Drags a leg to x over `bar`, keeping the legs in order and at least 0.2 inch apart on one
    // row.
    void MoveLeg(int leg, const CBarEx& bar, float x);

    // Stamping: notes whose left lies strictly inside the first-time or second-time section get
    // this marker's id with kind 1 or 2; a note right on a boundary is left alone.
    void Stamp(const WrittenNotes& notes) const;
    // Notes that carry this marker's id play on every pass again; they keep the id.
    void ClearStamps(const WrittenNotes& notes) const;
    // Stamps afresh after the marker was made or a leg was dragged.
    void Restamp(const WrittenNotes& notes) const;

    void Draw(Painter& painter, OutputMode mode) override;

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
    // What the last Draw produced; the hit tests read them.
    QPainterPath StartLegPath;
    QPainterPath MiddleLegPath;
    QPainterPath EndLegPath;
    QPainterPath LinePath;
    QPainterPath FirstTextPath;
    QPainterPath SecondTextPath;

private:
    // The first stave of the system a stored index stands for; null when it no longer exists.
    CStave* ResolveStave(std::int32_t index) const;
    // The index of the bar's system in the area, -1 when it is not in it.
    std::int32_t RowOf(const CBarEx& bar) const;
};

} // namespace corrieval
