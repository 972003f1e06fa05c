#include "notation/TieEx.h"

#include "model/ActiveView.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "notation/NoteEx.h"
#include "notation/TextOutline.h"

#include <algorithm>
#include <memory>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CTieEx, CScoObj);

namespace {
constexpr std::uint32_t kBlack = 0xFF000000;

CStave* StaveOf(CNoteEx& note)
{
    return note.FindAncestor<CStave>();
}
} // namespace

void CTieEx::AddNote(CNoteEx* note)
{
    Notes.push_back(note);
    if (note->Tie == nullptr)
        note->Tie = this;
    const auto count = static_cast<std::int32_t>(Notes.size());
    TieValue = count >= 4 ? count - 1 : count;
}

void CTieEx::Detach(CNoteEx* note)
{
    if (std::find(Notes.begin(), Notes.end(), note) == Notes.end())
        return;
    InvalidateSelf();
    std::erase(Notes, note);
}

bool CTieEx::RemoveNote(CNoteEx* note, CCorrievalDoc& owner)
{
    Detach(note);
    if (!Notes.empty())
        return false;
    DeleteFrom(owner);
    return true;
}

void CTieEx::DeleteFrom(CCorrievalDoc& owner)
{
    auto it =
        std::find_if(owner.Ties.begin(), owner.Ties.end(), [this](const auto& t) { return t.get() == this; });
    if (it == owner.Ties.end())
        return;
    const std::unique_ptr<CTieEx> self = std::move(*it);
    owner.Ties.erase(it);
    // `self` deletes this tie on the way out; nothing of it may be touched after this line.
}

RectF CTieEx::GetBounds() const
{
    CStave* stave = Notes.empty() ? nullptr : StaveOf(*Notes.front());
    if (stave == nullptr)
        return {};
    const RectF staveBounds = stave->GetBounds();
    RectF box = Notes.front()->GetBounds();
    box.Y = staveBounds.Y;
    box.Height = staveBounds.Height;
    for (CNoteEx* note : Notes) {
        if (StaveOf(*note) != stave)
            continue;
        const RectF b = note->GetBounds();
        const float right = std::max(box.Right(), b.Right());
        box.X = std::min(box.X, b.X);
        box.Width = right - box.X;
    }
    return box;
}

RectF CTieEx::FigureBounds() const
{
    const QRectF b = TextPath.boundingRect();
    return {static_cast<float>(b.x()), static_cast<float>(b.y()), static_cast<float>(b.width()),
            static_cast<float>(b.height())};
}

void CTieEx::LeaveOtherStaves(const CStave& stave)
{
    std::vector<CNoteEx*> leaving;
    for (CNoteEx* note : Notes) {
        if (StaveOf(*note) != &stave)
            leaving.push_back(note);
    }
    if (leaving.empty())
        return;
    // A tie of one note ties nothing.
    if (Notes.size() == leaving.size() + 1)
        leaving.push_back(Notes.front());
    for (CNoteEx* note : leaving) {
        Detach(note);
        if (note->Tie == this)
            note->Tie = nullptr;
    }
}

void CTieEx::Draw(Painter& painter, OutputMode)
{
    TextPath = QPainterPath();
    CStave* stave = Notes.empty() ? nullptr : StaveOf(*Notes.front());
    if (stave == nullptr)
        return;
    // A note moved to another stave breaks its tie here, at the first paint after the move.
    LeaveOtherStaves(*stave);
    if (Notes.empty()) {
        // Only a window's paint knows the document; a tie emptied while printing to a file stays
        // in the list, with nothing to draw and nothing to hit, until the next load.
        if (ScoreView* view = ActiveView(); view != nullptr && view->Document() != nullptr)
            DeleteFrom(*view->Document());
        return;
    }
    if (Notes.size() < 2)
        return; // one note has nothing to be tied to

    const CStave::Grid grid = stave->Positions();
    const float unit = grid[1];
    const RectF staveBounds = stave->GetBounds();
    const CNoteEx* left = Notes.front();
    const CNoteEx* right = left;
    NotePitch highest = LowestPitch;
    for (const CNoteEx* note : Notes) {
        if (note->GetBounds().X < left->GetBounds().X)
            left = note;
        if (note->GetBounds().X > right->GetBounds().X)
            right = note;
        highest = std::min(highest, note->Pitch);
    }

    // The curve rises to six stave units above the highest note, however far apart the pitches.
    const float controlY = staveBounds.Y + static_cast<float>(highest - 6) * unit;
    const auto endPoint = [&](const CNoteEx& note) {
        const RectF b = note.GetBounds();
        const int row = note.Pitch - 1;
        const float offset = row >= 0 && row < CStave::GridSize ? grid[static_cast<std::size_t>(row)] : 0;
        return QPointF(b.X + b.Width / 2, staveBounds.Y + offset - unit / 2);
    };
    const QPointF from = endPoint(*left);
    const QPointF to = endPoint(*right);
    const qreal dx = to.x() - from.x();
    QPainterPath curve(from);
    curve.cubicTo(from.x() + dx / 4, controlY, from.x() + dx * 3 / 4, controlY, to.x(), to.y());

    painter.SetSmoothing(true);
    painter.StrokePath(curve, Pen{kBlack, stave->GetStaveLineWidth()});
    if (Notes.size() > 2) {
        const float size = staveBounds.Height * 0.125f;
        const TextOutline figure = SansSerifOutline(QString::number(TieValue), size);
        const qreal centreX = from.x() + dx / 2;
        const qreal centreY = controlY + size;
        TextPath = figure.Path.translated(centreX - figure.Width / 2, centreY - figure.Height / 2);
        painter.FillPath(TextPath, Brush::Solid(kBlack));
    }
    painter.SetSmoothing(false);
}

} // namespace corrieval
