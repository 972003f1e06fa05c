#include "notation/GlyphOutlines.h"

#include "notation/MusicFont.h"

#include <QFont>
#include <QTransform>

namespace corrieval {

GlyphOutlines& GlyphOutlines::Instance()
{
    static GlyphOutlines instance;
    return instance;
}

bool GlyphOutlines::Open()
{
    if (m_font.isValid())
        return true;
    QFont font(QString::fromLatin1(MusicFontFamily));
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::NoFontMerging);
    // Qt falls back to another family when the music font is not loaded; that one must not
    // stand in for it, and a later load must still be picked up, so nothing is kept.
    QRawFont raw = QRawFont::fromFont(font);
    if (!raw.isValid() || raw.familyName() != font.family())
        return false;
    // At one pixel per font unit every outline point and metric is exact.
    raw.setPixelSize(raw.unitsPerEm());
    m_font = raw;
    m_ascent = static_cast<float>(raw.ascent() / raw.pixelSize());
    m_descent = static_cast<float>(raw.descent() / raw.pixelSize());
    return true;
}

const GlyphOutline& GlyphOutlines::Find(char16_t code)
{
    static const GlyphOutline none;
    if (code == 0 || !Open())
        return none;
    if (const auto found = m_glyphs.find(code); found != m_glyphs.end())
        return found->second;

    GlyphOutline& glyph = m_glyphs[code];
    const QList<quint32> indexes = m_font.glyphIndexesForString(QString(QChar(code)));
    // Index 0 is the font's placeholder box, shown for codes it has no symbol for.
    if (indexes.size() != 1 || indexes[0] == 0)
        return glyph;
    const qreal perEm = 1 / m_font.pixelSize();
    glyph.Path = QTransform::fromScale(perEm, perEm).map(m_font.pathForGlyph(indexes[0]));
    const QList<QPointF> advances = m_font.advancesForGlyphIndexes(indexes, QRawFont::UseDesignMetrics);
    glyph.Advance = static_cast<float>(advances[0].x() * perEm);
    return glyph;
}

} // namespace corrieval
