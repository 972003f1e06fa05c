#include "editor/TimeSigCombo.h"

#include "notation/TimeSig.h"
#include "platform/QtPainter.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>

namespace corrieval {

namespace {

// The side of a picture's cell. The digits are black, so every cell is white whatever the look.
constexpr int kCell = 32;
// Drawn at twice the size, for screens that scale.
constexpr int kDetail = 2;

QIcon Picture(CTimeSig& signature)
{
    // Drawn at full detail first; the pixel ratio is set afterwards, as the score's painter maps
    // inches straight to the device's pixels.
    QImage cell(kCell * kDetail, kCell * kDetail, QImage::Format_ARGB32_Premultiplied);
    cell.fill(Qt::white);
    {
        QPainter qp(&cell);
        // One inch to the cell: without a stave the signature lays itself out in its box, here
        // inset a little so that its digits keep clear of the cell's edges.
        platform::QtPainter painter(qp, static_cast<float>(kCell * kDetail), 1.0f);
        signature.SetBounds(0.1f, 0.1f, 0.8f, 0.8f);
        signature.Draw(painter, OutputMode::Screen);
    }
    QPixmap pixmap = QPixmap::fromImage(cell);
    pixmap.setDevicePixelRatio(kDetail);
    return QIcon(pixmap);
}

} // namespace

CTimeSigCombo::CTimeSigCombo(QWidget* parent) : QComboBox(parent)
{
    setIconSize(QSize(kCell, kCell));
    CTimeSig signature;
    for (std::int32_t type = CTimeSig::None; type <= CTimeSig::Custom; ++type) {
        signature.SetType(type);
        const std::string_view name = CTimeSig::TypeName(type);
        addItem(Picture(signature), QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
    }
}

bool CTimeSigCombo::IsCustom() const
{
    return currentText() == QStringLiteral("Custom");
}

} // namespace corrieval
