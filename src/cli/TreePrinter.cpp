#include "cli/TreePrinter.h"

#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/ImageArea.h"
#include "notation/TextArea.h"
#include "notation/TieEx.h"

#include <QStringList>

namespace corrieval::cli {

namespace {

QString Num(float v) { return QString::number(static_cast<double>(v), 'g', 6); }

QString Rect(const RectF& r)
{
    return QStringLiteral("(%1, %2, %3 x %4)").arg(Num(r.X), Num(r.Y), Num(r.Width), Num(r.Height));
}

QString Margins(const CScoObj& o)
{
    return QStringLiteral("margins %1 %2 %3 %4")
        .arg(Num(o.LeftMargin), Num(o.TopMargin), Num(o.RightMargin), Num(o.BottomMargin));
}

QString Hex(std::uint32_t v) { return QStringLiteral("0x%1").arg(v, 8, 16, QLatin1Char('0')).toUpper().replace("0X", "0x"); }

QString TimeSigText(const CTimeSig& sig)
{
    QString text = QString::fromLatin1(CTimeSig::TypeName(sig.Type).data());
    if (sig.Type == CTimeSig::Custom)
        text += QStringLiteral(" %1/%2").arg(sig.CustomBeats).arg(sig.CustomUnit);
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString BarLines(const CBarConfig& c)
{
    QStringList parts;
    if (c.StartRepeat)
        parts << QStringLiteral("start-repeat");
    if (c.StartBarLine)
        parts << QStringLiteral("start-line");
    if (c.EndRepeat)
        parts << QStringLiteral("end-repeat");
    if (c.EndBarLine)
        parts << QStringLiteral("end-line");
    if (c.RepeatEnding != 0)
        parts << QStringLiteral("ending %1").arg(c.RepeatEnding);
    if (c.TimeSig.Type != CTimeSig::None)
        parts << QStringLiteral("time %1").arg(TimeSigText(c.TimeSig));
    return parts.join(QLatin1Char(' '));
}

QString Fields(const CScoObj& obj)
{
    if (const auto* area = dynamic_cast<const CStaveArea*>(&obj)) {
        return QStringLiteral("parts %1, spacing %2, time %3, show time %4 key %5 bar lines %6, background %7, "
                              "repeat markers %8")
            .arg(area->PartCount)
            .arg(area->StaveSpacing)
            .arg(TimeSigText(area->InitialTimeSig))
            .arg(int(area->ShowTimeSig))
            .arg(int(area->ShowKeySig))
            .arg(int(area->ShowBarLines))
            .arg(Hex(area->Background))
            .arg(area->RepeatMarkers.size());
    }
    if (const auto* group = dynamic_cast<const CStaveGroup*>(&obj))
        return QStringLiteral("columns %1").arg(group->BarConfigs.size());
    if (const auto* stave = dynamic_cast<const CStave*>(&obj))
        return QStringLiteral("clef %1, time %2").arg(stave->Clef.Type).arg(TimeSigText(stave->TimeSig));
    if (const auto* bar = dynamic_cast<const CBarEx*>(&obj)) {
        QString text = bar->Config != nullptr ? BarLines(*bar->Config) : QStringLiteral("no configuration");
        if (bar->RepeatTiming != nullptr)
            text += QStringLiteral(" repeat marker %1").arg(bar->RepeatTiming->RepeatId);
        return text.trimmed();
    }
    if (const auto* note = dynamic_cast<const CNoteEx*>(&obj)) {
        QString text = QStringLiteral("pitch %1, duration %2, glyph %3")
                           .arg(note->Pitch)
                           .arg(note->Duration)
                           .arg(int(note->HeadChar.Code));
        if (note->DotCut != 0)
            text += note->DotCut == CNoteEx::Dotted ? QStringLiteral(", dotted") : QStringLiteral(", cut");
        if (note->Weight != 1.0f)
            text += QStringLiteral(", weight %1").arg(Num(note->Weight));
        if (note->Tie != nullptr)
            text += QStringLiteral(", tie %1").arg(note->Tie->Id);
        if (note->RepeatKind != 0)
            text += QStringLiteral(", repeat %1 of marker %2").arg(note->RepeatKind).arg(note->RepeatId);
        if (note->AbbreviationCode != 0)
            text += QStringLiteral(", abbreviation %1").arg(Hex(note->AbbreviationCode));
        return text;
    }
    if (const auto* text = dynamic_cast<const CTextArea*>(&obj)) {
        return QStringLiteral("\"%1\", font \"%2\" %3, alignment %4, colour %5")
            .arg(QString(text->Text).replace(QLatin1Char('\n'), QStringLiteral("\\n")).replace(QLatin1Char('\r'), QString()),
                 text->Font.FaceName())
            .arg(text->Font.Height())
            .arg(text->Alignment)
            .arg(Hex(text->Colour));
    }
    if (const auto* image = dynamic_cast<const CImageArea*>(&obj))
        return QStringLiteral("state %1, \"%2\"").arg(image->ImageState).arg(image->Path);
    return {};
}

QString Indent(int depth) { return QString(depth * 2, QLatin1Char(' ')); }

// Markers belong to their area but are not among its children.
void PrintRepeatMarkers(const CStaveArea& area, int depth, QTextStream& out)
{
    for (const auto& m : area.RepeatMarkers) {
        out << Indent(depth) << "CRepeatTiming " << Rect(m->Bounds()) << ", id " << m->RepeatId << ", \""
            << m->FirstMarker << "\" \"" << m->SecondMarker << "\", staves " << m->StartStave << ' '
            << m->MiddleStave << ' ' << m->EndStave << ", at " << Num(m->StartPosition) << ' '
            << Num(m->MiddlePosition) << ' ' << Num(m->EndPosition) << '\n';
    }
}

void PrintObject(const CScoObj& obj, int depth, QTextStream& out)
{
    out << Indent(depth) << obj.GetRuntimeClass().Name.data() << ' ' << Rect(obj.Bounds())
        << ' ' << Margins(obj);
    if (const QString fields = Fields(obj); !fields.isEmpty())
        out << ", " << fields;
    out << '\n';
    if (const auto* area = dynamic_cast<const CStaveArea*>(&obj))
        PrintRepeatMarkers(*area, depth + 1, out);
    if (const auto* container = dynamic_cast<const CGraphObjContainer*>(&obj)) {
        for (const auto& child : container->Children())
            PrintObject(*child, depth + 1, out);
    }
}

} // namespace

void PrintTree(const CCorrievalDoc& doc, QTextStream& out)
{
    out << "CCorrievalDoc version " << doc.Version << ", page " << Num(doc.PageWidth) << " x " << Num(doc.PageHeight)
        << ", tempo " << doc.Tempo << ", zoom " << Num(doc.LoadedZoom) << ", locked " << doc.Locked << ", pages "
        << doc.Pages.size() << ", ties " << doc.Ties.size() << '\n';
    for (const auto& tie : doc.Ties)
        out << "  CTieEx id " << tie->Id << ", notes " << tie->Notes.size() << ", value " << tie->TieValue << '\n';
    for (const auto& page : doc.Pages)
        PrintObject(*page, 1, out);
}

} // namespace corrieval::cli
