#include "editor/PropertyDialogs.h"

#include "editor/BarPropertiesDialog.h"
#include "editor/StaveAreaPropertiesDialog.h"
#include "notation/TextArea.h"

#include <QFontDialog>
#include <cmath>

namespace corrieval {

namespace {

constexpr int kBoldWeight = 700;
constexpr int kNormalWeight = 400;
// A text area's font height is kept in hundredths of an inch; a point is a 72nd.
constexpr double kPointsPerHeightUnit = 0.72;

QFont QFontOf(const CTextArea& area)
{
    QFont font(area.Font.FaceName());
    font.setPointSizeF(std::abs(area.Font.Height()) * kPointsPerHeightUnit);
    font.setBold(area.Font.Weight() == kBoldWeight);
    font.setItalic(area.Font.Italic());
    font.setUnderline(area.Font.Underline());
    font.setStrikeOut(area.Font.StrikeOut());
    return font;
}

void ApplyFont(const QFont& font, CTextArea& area)
{
    area.Font.SetFaceName(font.family());
    // Negative: the height of the characters, not of the cell, as the file has always held it.
    area.Font.SetHeight(-static_cast<std::int32_t>(std::lround(font.pointSizeF() / kPointsPerHeightUnit)));
    area.Font.SetWeight(font.bold() ? kBoldWeight : kNormalWeight);
    area.Font.SetItalic(font.italic());
    area.Font.SetUnderline(font.underline());
    area.Font.SetStrikeOut(font.strikeOut());
}

// The program's dialogs. The text area's font has its dialog already; the others arrive with
// their own windows and open nothing until then.
class ProgramDialogs : public PropertyDialogs {
public:
    bool EditStaveArea(CStaveArea* area, QWidget* parent) override
    {
        return area != nullptr && CStaveAreaProperties::Edit(*area, parent);
    }
    bool EditTextArea(CTextArea* area, QWidget* parent) override
    {
        if (area == nullptr)
            return false;
        bool ok = false;
        const QFont font = QFontDialog::getFont(&ok, QFontOf(*area), parent, QStringLiteral("Font"));
        if (ok) {
            ApplyFont(font, *area);
            area->InvalidateSelf();
        }
        return ok;
    }
    bool EditImageArea(CImageArea&, QWidget*) override { return false; }
    bool EditBar(CBarEx& bar, QWidget* parent) override { return CBarProperties::Edit(bar, parent); }
    bool EditNotes(const std::vector<CScoObj*>&, QWidget*) override { return false; }
};

PropertyDialogs* g_replacement = nullptr;

} // namespace

PropertyDialogs& CurrentPropertyDialogs()
{
    static ProgramDialogs program;
    return g_replacement != nullptr ? *g_replacement : program;
}

PropertyDialogs* SetPropertyDialogs(PropertyDialogs* dialogs)
{
    return std::exchange(g_replacement, dialogs);
}

} // namespace corrieval
