#include "editor/MovementGalleries.h"

#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "platform/MovementDefinitions.h"
#include "platform/QtPainter.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <algorithm>

namespace corrieval {

namespace {

// Pixels to the inch of the drawing that is scaled down into the pictures.
constexpr int kDrawingSize = 128;
// Clear pixels around the ink of a picture.
constexpr qreal kPictureMargin = 1;
// The least side of the square a picture shows, as a share of the definition's box: a plain note
// fills the picture's height, but a lone semibreve does not swell to a blot.
constexpr double kLeastFrame = 0.6;

QRect InkBounds(const QImage& image)
{
    int left = image.width();
    int right = -1;
    int top = image.height();
    int bottom = -1;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) == 0)
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

// Stems, beams and stave lines come out a pixel wide or less once scaled down, and so pale that
// they blur into grey pairs; doubling the cover of every pixel keeps them black and sharp.
QImage Strengthened(const QImage& picture)
{
    QImage ink = picture.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < ink.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(ink.scanLine(y));
        for (int x = 0; x < ink.width(); ++x)
            line[x] =
                qRgba(qRed(line[x]), qGreen(line[x]), qBlue(line[x]), std::min(255, 2 * qAlpha(line[x])));
    }
    return ink.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

MovementGalleries::MovementGalleries()
{
    for (const char* name : MovementPalettes) {
        PaletteGallery& gallery = m_galleries.emplace_back();
        gallery.Name = QString::fromLatin1(name);
        for (const PaletteEntry& entry : ReadPalette(gallery.Name)) {
            std::unique_ptr<CNoteBase> prototype = MakePrototype(entry);
            gallery.Buttons.push_back({entry.Name, DrawIcon(*prototype, entry.DrawStave != 0), EntryCount()});
            m_prototypes.push_back(std::move(prototype));
        }
    }
}

MovementGalleries::~MovementGalleries() = default;

int MovementGalleries::EntryIndex(int gallery, int item) const
{
    if (gallery < 0 || gallery >= static_cast<int>(m_galleries.size()))
        return -1;
    const auto& buttons = m_galleries[static_cast<std::size_t>(gallery)].Buttons;
    if (item < 0 || item >= static_cast<int>(buttons.size()))
        return -1;
    return buttons[static_cast<std::size_t>(item)].EntryIndex;
}

int MovementGalleries::GalleryOf(int entryIndex) const
{
    int first = 0;
    for (std::size_t g = 0; g < m_galleries.size(); ++g) {
        const int count = static_cast<int>(m_galleries[g].Buttons.size());
        if (entryIndex >= first && entryIndex < first + count)
            return static_cast<int>(g);
        first += count;
    }
    return -1;
}

CNoteBase* MovementGalleries::Prototype(int entryIndex) const
{
    if (entryIndex < 0 || entryIndex >= EntryCount())
        return nullptr;
    return m_prototypes[static_cast<std::size_t>(entryIndex)].get();
}

std::unique_ptr<CNoteBase> MovementGalleries::MakePrototype(const PaletteEntry& entry)
{
    if (!entry.RelativeNotePositions.isEmpty()) {
        auto movement = std::make_unique<CFixedNoteGroup>(entry.Name);
        movement->BuildNotes(entry.Chars, entry.RelativeNotePositions, 0, 0);
        return movement;
    }
    return CNoteEx::NoteFromChar(entry.Chars.isEmpty() ? char16_t{0} : entry.Chars.front().unicode());
}

QIcon MovementGalleries::DrawIcon(CNoteBase& prototype, bool drawStave)
{
    // Drawn large in the middle of a canvas with room all round, since some definitions reach
    // beyond their box (a single gracenote's flag, the ledger line of a first High A); then a
    // square around the ink is scaled into the picture.
    QImage canvas(3 * kDrawingSize, 3 * kDrawingSize, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    {
        QPainter qp(&canvas);
        platform::QtPainter painter(qp, static_cast<float>(kDrawingSize), 1.0f, PointF{-1, -1});
        if (auto* movement = dynamic_cast<CFixedNoteGroup*>(&prototype))
            movement->DrawToolbarImage(painter, 0, 0, 1, 1, drawStave);
        else if (auto* note = dynamic_cast<CNoteEx*>(&prototype))
            note->DrawToolbarImage(painter, 0, 0, 1, 1);
    }
    QRect frame = InkBounds(canvas);
    if (frame.isEmpty())
        frame = QRect(kDrawingSize, kDrawingSize, kDrawingSize, kDrawingSize);
    const int side = std::max({frame.width(), frame.height(), static_cast<int>(kLeastFrame * kDrawingSize)});
    frame = QRect(frame.center().x() - side / 2, frame.center().y() - side / 2, side, side);

    QIcon icon;
    for (int size : IconSizes) {
        QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter qp(&picture);
        qp.setRenderHint(QPainter::SmoothPixmapTransform);
        qp.drawImage(
            QRectF(kPictureMargin, kPictureMargin, size - 2 * kPictureMargin, size - 2 * kPictureMargin),
            canvas, frame);
        qp.end();
        icon.addPixmap(QPixmap::fromImage(Strengthened(picture)));
    }
    return icon;
}

} // namespace corrieval
