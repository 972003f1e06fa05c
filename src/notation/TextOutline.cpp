#include "notation/TextOutline.h"

#include <QFont>
#include <QFontMetricsF>
#include <QTransform>

namespace corrieval {

namespace {
constexpr int kDesignPixels = 256;
}

TextOutline SansSerifOutline(const QString& text, float emSize)
{
    QFont font(QStringLiteral("sans-serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setWeight(QFont::Normal);
    font.setPixelSize(kDesignPixels);
    const QFontMetricsF metrics(font);

    QPainterPath design;
    design.setFillRule(Qt::WindingFill);
    design.addText(0, metrics.ascent(), font, text);

    const qreal scale = emSize / kDesignPixels;
    TextOutline outline;
    outline.Path = QTransform::fromScale(scale, scale).map(design);
    outline.Width = static_cast<float>(metrics.horizontalAdvance(text) * scale);
    outline.Height = static_cast<float>(metrics.height() * scale);
    return outline;
}

} // namespace corrieval
