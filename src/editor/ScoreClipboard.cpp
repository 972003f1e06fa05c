#include "editor/ScoreClipboard.h"

#include "formats/archive/ArchiveError.h"
#include "model/AbbreviationArea.h"
#include "model/BarEx.h"
#include "model/Messages.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/FixedNoteGroup.h"
#include "notation/ImageArea.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TextArea.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>

namespace corrieval {

namespace {

const QString kTiedNotes =
    QStringLiteral("Items will be added to clipboard but a selection containing tied notes will not be cut.");
const QString kBarNeeded = QStringLiteral("A bar must be selected to paste notes.");
const QString kPageNeeded =
    QStringLiteral("A blank area must be selected to paste text, music, and image items etc.");
const QString kTooFewBars = QStringLiteral("Some music has not been pasted due to lack of sufficient bars.");

QClipboard* SystemClipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr
               ? QGuiApplication::clipboard()
               : nullptr;
}

bool IsCopiedArea(const CScoObj& object)
{
    return object.IsKindOf(CTextArea::Class) || object.IsKindOf(CStaveArea::Class) ||
           object.IsKindOf(CImageArea::Class);
}

// A note as it travels: out of any repeat section, marked with the number of its bar.
std::unique_ptr<CNoteBase> NoteCopy(const CNoteEx& note, std::int32_t barNumber)
{
    auto copy = note.Clone();
    auto& clone = static_cast<CNoteEx&>(*copy);
    clone.RepeatKind = 0;
    clone.RepeatId = barNumber;
    return copy;
}

std::unique_ptr<CScoObj> ItemCopy(const CNoteBase& item, std::int32_t barNumber)
{
    if (const auto* group = dynamic_cast<const CNoteGroupEx*>(&item)) {
        auto copy = group->Clone();
        for (const CNoteEx* note : group->Notes())
            copy->AddChild(NoteCopy(*note, barNumber), false);
        return copy;
    }
    if (const auto* note = dynamic_cast<const CNoteEx*>(&item))
        return NoteCopy(*note, barNumber);
    auto copy = item.Clone();
    if (auto* movement = dynamic_cast<CFixedNoteGroup*>(copy.get()))
        movement->SetRepeatLink(0, barNumber);
    return copy;
}

// An area as it travels: placed relative to the content box of its page.
std::unique_ptr<CScoObj> AreaCopy(const CPageArea& area)
{
    std::unique_ptr<CPageArea> copy = area.Clone();
    if (copy == nullptr)
        return nullptr;
    const RectF b = area.Bounds();
    float left = 0;
    float top = 0;
    if (const auto* page = dynamic_cast<const CTunePage*>(area.Parent())) {
        left = page->Bounds().X + page->LeftMargin;
        top = page->Bounds().Y + page->TopMargin;
    }
    copy->SetBounds(b.X - left, b.Y - top, b.Width, b.Height);
    return copy;
}

// A pasted note: out of any repeat section, laid out by its bar's next refit.
std::unique_ptr<CNoteBase> PastedNote(const CNoteEx& note)
{
    auto copy = note.Clone();
    auto& clone = static_cast<CNoteEx&>(*copy);
    clone.RepeatKind = 0;
    clone.RepeatId = 0;
    clone.Pasted = true;
    return copy;
}

std::unique_ptr<CScoObj> PastedArea(const CScoObj& element, const CTunePage& page)
{
    if (!IsCopiedArea(element))
        return nullptr;
    std::unique_ptr<CPageArea> copy = static_cast<const CPageArea&>(element).Clone();
    if (copy == nullptr)
        return nullptr;
    const RectF stored = copy->Bounds();
    copy->SetBounds(page.Bounds().X + page.LeftMargin + stored.X + ScoreClipboard::PasteOffset,
                    page.Bounds().Y + page.TopMargin + stored.Y + ScoreClipboard::PasteOffset, stored.Width,
                    stored.Height);
    if (auto* music = dynamic_cast<CStaveArea*>(copy.get()))
        music->Relayout();
    return copy;
}

void Refit(CScoObj& target)
{
    target.RefitContent();
    target.InvalidateSelf();
}

// Walks the bars of a paste: notes copied from one bar go into the current bar, and each new
// source bar moves the paste on to the next bar of the tune.
class BarStepper {
public:
    explicit BarStepper(CScoObj* target) : m_target(target) {}

    CScoObj* Target() const { return m_target; }
    // Makes the bar for an item of source bar `id` current; false when the tune has run out.
    bool StepTo(std::int32_t id)
    {
        if (m_currentId == 0)
            m_currentId = id;
        if (id != m_currentId && m_target != nullptr) {
            Refit(*m_target);
            m_target = CStaveArea::NextBar(static_cast<CBarEx&>(*m_target));
            m_currentId = id;
        }
        return m_target != nullptr;
    }

private:
    CScoObj* m_target;
    std::int32_t m_currentId = 0;
};

// The pasted copy of a note item, or null when the tune runs out of bars for it.
std::unique_ptr<CScoObj> PastedNoteItem(const CScoObj& element, BarStepper& bars)
{
    if (const auto* group = dynamic_cast<const CNoteGroupEx*>(&element)) {
        auto copy = group->Clone();
        for (const CNoteEx* note : group->Notes()) {
            if (!bars.StepTo(note->RepeatId))
                return nullptr;
            copy->AddChild(PastedNote(*note), false);
        }
        copy->Pasted = true;
        return copy;
    }
    if (const auto* movement = dynamic_cast<const CFixedNoteGroup*>(&element)) {
        if (!bars.StepTo(movement->GetRepeatLink().Id))
            return nullptr;
        auto copy = movement->Clone();
        static_cast<CFixedNoteGroup&>(*copy).SetRepeatLink(0, 0);
        copy->Pasted = true;
        return copy;
    }
    const auto* note = dynamic_cast<const CNoteEx*>(&element);
    if (note == nullptr || !bars.StepTo(note->RepeatId))
        return nullptr;
    return PastedNote(*note);
}

} // namespace

ScoreClipboard& ScoreClipboard::Instance()
{
    static ScoreClipboard clipboard;
    return clipboard;
}

bool ScoreClipboard::CanCopy(const std::vector<CScoObj*>& selection)
{
    return !selection.empty() && !selection.front()->IsKindOf(CAbbreviationArea::Class);
}

void ScoreClipboard::Copy(const std::vector<CScoObj*>& selection)
{
    if (selection.empty())
        return;
    const bool tied = std::any_of(selection.begin(), selection.end(), [](const CScoObj* item) {
        const auto* note = dynamic_cast<const CNoteEx*>(item);
        return note != nullptr && note->Tie != nullptr;
    });
    if (tied)
        ShowMessage(kTiedNotes);
    Clear();

    const bool allNotes = std::all_of(selection.begin(), selection.end(),
                                      [](const CScoObj* item) { return item->IsKindOf(CNoteBase::Class); });
    if (allNotes) {
        std::int32_t barNumber = FirstBarNumber;
        const CBarEx* lastBar = selection.front()->FindAncestor<CBarEx>();
        for (CScoObj* item : selection) {
            if (const CBarEx* bar = item->FindAncestor<CBarEx>(); bar != lastBar) {
                ++barNumber;
                lastBar = bar;
            }
            m_list.Items.push_back(ItemCopy(static_cast<const CNoteBase&>(*item), barNumber));
        }
    } else {
        const CScoObj& head = *selection.front();
        if (head.IsKindOf(CAbbreviationArea::Class))
            return;
        if (IsCopiedArea(head))
            m_list.Items.push_back(AreaCopy(static_cast<const CPageArea&>(head)));
    }
    WriteSystemClipboard(EncodeClipboard(m_list));
}

bool ScoreClipboard::CanPaste(const CScoObj* target) const
{
    if (m_list.Items.empty() || target == nullptr || target->IsKindOf(CAbbreviationArea::Class))
        return false;
    const CScoObj& head = *m_list.Items.front();
    return (target->IsKindOf(CTunePage::Class) && head.IsKindOf(CPageArea::Class)) ||
           (target->IsKindOf(CBarEx::Class) && head.IsKindOf(CNoteBase::Class));
}

bool ScoreClipboard::Paste(CScoObj* target)
{
    if (target == nullptr)
        return false;
    Clear();
    if (const std::optional<QByteArray> bytes = ReadSystemClipboard()) {
        try {
            m_list.Items = std::move(DecodeClipboard(*bytes)->Items);
        } catch (const ArchiveError& e) {
            ShowMessage(QStringLiteral("The clipboard holds damaged music (%1), so nothing was pasted.")
                            .arg(e.Describe()),
                        MessageKind::Warning);
            return false;
        }
    }
    // Another program's clipboard, or a copy of something that does not travel: nothing to do,
    // and the target is left as it was.
    if (m_list.Items.empty())
        return false;
    return PasteList(target);
}

bool ScoreClipboard::PasteList(CScoObj* target)
{
    BarStepper bars(target);
    bool pasted = false;
    for (const auto& element : m_list.Items) {
        std::unique_ptr<CScoObj> item;
        if (element->IsKindOf(CNoteBase::Class)) {
            if (!bars.Target()->IsKindOf(CBarEx::Class)) {
                ShowMessage(kBarNeeded);
                break;
            }
            item = PastedNoteItem(*element, bars);
        } else {
            if (!bars.Target()->IsKindOf(CTunePage::Class)) {
                ShowMessage(kPageNeeded);
                break;
            }
            item = PastedArea(*element, static_cast<const CTunePage&>(*bars.Target()));
        }
        if (item == nullptr)
            break;
        static_cast<CGraphObjContainer&>(*bars.Target()).AppendChild(std::move(item), true);
        pasted = true;
    }
    if (bars.Target() == nullptr)
        ShowMessage(kTooFewBars);
    else
        Refit(*bars.Target());
    return pasted;
}

void ScoreClipboard::WriteSystemClipboard(const QByteArray& bytes)
{
    if (QClipboard* clipboard = SystemClipboard()) {
        auto* data = new QMimeData;
        data->setData(QString::fromLatin1(ScoreMimeType), bytes);
        clipboard->setMimeData(data);
    }
}

std::optional<QByteArray> ScoreClipboard::ReadSystemClipboard()
{
    const QClipboard* clipboard = SystemClipboard();
    const QMimeData* data = clipboard != nullptr ? clipboard->mimeData() : nullptr;
    const QString type = QString::fromLatin1(ScoreMimeType);
    if (data == nullptr || !data->hasFormat(type))
        return std::nullopt;
    return data->data(type);
}

} // namespace corrieval
