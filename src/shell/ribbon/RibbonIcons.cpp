#include "shell/ribbon/RibbonIcons.h"

#include <QAction>
#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace corrieval::ribbon {

namespace {

// The colours the drawings are made in, replaced before rendering.
constexpr char kLineColour[] = "#010203";
constexpr char kAccentColour[] = "#040506";
constexpr char kFillColour[] = "#070809";
constexpr int kSizes[] = {16, 32};

QString IconPath(const QString& name, int size)
{
    return QStringLiteral(":/ribbon/icons/%1/%2.svg").arg(size).arg(name);
}

QPixmap Render(const QByteArray& drawing, int size, int scale, const QColor& line, const QColor& accent,
               const QColor& fill)
{
    QByteArray svg = drawing;
    svg.replace(kLineColour, line.name().toLatin1());
    svg.replace(kAccentColour, accent.name().toLatin1());
    svg.replace(kFillColour, fill.name().toLatin1());
    QSvgRenderer renderer(svg);
    QPixmap pixmap(size * scale, size * scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.end();
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

QPixmap Inked(QPixmap pixmap, const QColor& ink)
{
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), ink);
    return pixmap;
}

QColor GreyOf(const QPalette& palette)
{
    return palette.color(QPalette::Disabled, QPalette::ButtonText);
}

} // namespace

QIcon RibbonIcon(const QString& name, const QPalette& palette)
{
    QIcon icon;
    for (int size : kSizes) {
        QFile file(IconPath(name, size));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QByteArray drawing = file.readAll();
        const QColor fill = palette.color(QPalette::Base);
        const QColor grey = GreyOf(palette);
        // Drawn for ordinary screens and at twice the size for high-density ones, each sharp.
        for (int scale : {1, 2}) {
            icon.addPixmap(Render(drawing, size, scale, palette.color(QPalette::ButtonText),
                                  palette.color(QPalette::Highlight), fill),
                           QIcon::Normal);
            icon.addPixmap(Render(drawing, size, scale, grey, grey, fill), QIcon::Disabled);
        }
    }
    return icon;
}

QIcon InkIcon(const QIcon& picture, const QPalette& palette)
{
    QIcon icon;
    for (const QSize& size : picture.availableSizes()) {
        const QPixmap source = picture.pixmap(size, 1.0);
        icon.addPixmap(Inked(source, palette.color(QPalette::ButtonText)), QIcon::Normal);
        icon.addPixmap(Inked(source, GreyOf(palette)), QIcon::Disabled);
    }
    return icon;
}

bool HasRibbonIcon(const QString& name)
{
    return QFile::exists(IconPath(name, 16)) && QFile::exists(IconPath(name, 32));
}

void ApplyRibbonIcon(QAction* action, const QPalette& palette)
{
    const QString name = action->property(kIconProperty).toString();
    if (!name.isEmpty())
        action->setIcon(RibbonIcon(name, palette));
}

} // namespace corrieval::ribbon
