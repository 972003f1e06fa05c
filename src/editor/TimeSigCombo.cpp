#include "editor/TimeSigCombo.h"

#include "notation/TimeSig.h"
#include "platform/QtPainter.h"

#include <QPainter>

namespace corrieval {

namespace {

constexpr int kCell = 32;

// The signature's digits on a white cell, as they stand at the head of a stave.
QIcon Picture(const CTimeSig& sig)
{
    QPixmap cell(kCell, kCell);
    cell.fill(Qt::white);
    QPainter qp(&cell);
    // One inch to the cell, so that the signature's box is the whole picture.
    platform::QtPainter painter(qp, static_cast<float>(kCell), 1.0f);
    CTimeSig drawn(sig);
    drawn.Stave = nullptr;
    drawn.SetBounds(0, 0, 1, 1);
    drawn.Draw(painter, OutputMode::Screen);
    return QIcon(cell);
}

} // namespace

CTimeSigCombo::CTimeSigCombo(QWidget* parent) : QComboBox(parent)
{
    setIconSize(QSize(kCell, kCell));
}

void CTimeSigCombo::Fill(const CTimeSig& current)
{
    clear();
    CTimeSig sig(current);
    for (std::int32_t type = CTimeSig::None; type <= CTimeSig::Custom; ++type) {
        sig.SetType(type);
        const std::string_view name = CTimeSig::TypeName(type);
        addItem(Picture(sig), QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
    }
    setCurrentIndex(current.Type >= CTimeSig::None && current.Type <= CTimeSig::Custom ? current.Type
                                                                                       : CTimeSig::None);
}

bool CTimeSigCombo::IsCustom() const
{
    return currentIndex() == CTimeSig::Custom;
}

} // namespace corrieval
