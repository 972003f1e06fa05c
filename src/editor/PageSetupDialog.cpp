#include "editor/PageSetupDialog.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

#include <utility>

namespace corrieval {

namespace {

// A sheet of paper with a few stave lines on it, upright or on its side.
QIcon PagePicture(bool portrait, const QPalette& palette)
{
    const QSize size(48, 48);
    QPixmap pixmap(size * 2);
    pixmap.setDevicePixelRatio(2);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF sheet = portrait ? QRectF(12, 4, 24, 34) : QRectF(5, 11, 38, 26);
    p.setPen(QPen(palette.color(QPalette::WindowText), 1.2));
    p.setBrush(palette.color(QPalette::Base));
    p.drawRect(sheet);
    p.setPen(QPen(palette.color(QPalette::Highlight), 1));
    for (int line = 0; line < 4; ++line) {
        const double y = sheet.top() + 6 + line * (sheet.height() - 10) / 4;
        p.drawLine(QPointF(sheet.left() + 4, y), QPointF(sheet.right() - 4, y));
    }
    return QIcon(pixmap);
}

QDoubleSpinBox* MarginBox(float value)
{
    auto* box = new QDoubleSpinBox;
    box->setRange(CPageSetup::MinMargin, CPageSetup::MaxMargin);
    box->setDecimals(2);
    box->setSingleStep(0.05);
    box->setSuffix(QStringLiteral(" in"));
    box->setValue(value);
    return box;
}

} // namespace

CPageSetup::CPageSetup(const PageSetup& setup, QWidget* parent)
    : QDialog(parent),
      m_setup(setup),
      m_portrait(new QRadioButton(QStringLiteral("Portrait"))),
      m_landscape(new QRadioButton(QStringLiteral("Landscape"))),
      m_top(MarginBox(setup.TopMargin)),
      m_left(MarginBox(setup.LeftMargin)),
      m_right(MarginBox(setup.RightMargin)),
      m_bottom(MarginBox(setup.BottomMargin))
{
    setWindowTitle(QStringLiteral("Page Setup"));
    for (QRadioButton* button : {m_portrait, m_landscape})
        button->setIconSize(QSize(48, 48));
    m_portrait->setIcon(PagePicture(true, palette()));
    m_landscape->setIcon(PagePicture(false, palette()));

    auto* orientation = new QGroupBox(QStringLiteral("Orientation"));
    auto* orientationRow = new QHBoxLayout(orientation);
    orientationRow->addWidget(m_portrait);
    orientationRow->addWidget(m_landscape);

    auto* margins = new QGroupBox(QStringLiteral("Margins"));
    auto* form = new QFormLayout(margins);
    form->addRow(QStringLiteral("&Top:"), m_top);
    form->addRow(QStringLiteral("&Left:"), m_left);
    form->addRow(QStringLiteral("&Right:"), m_right);
    form->addRow(QStringLiteral("&Bottom:"), m_bottom);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(orientation);
    layout->addWidget(margins);
    layout->addWidget(buttons);

    (setup.Height > setup.Width ? m_portrait : m_landscape)->setChecked(true);
    connect(m_portrait, &QRadioButton::toggled, this, &CPageSetup::SetPortrait);
}

void CPageSetup::SetPortrait(bool portrait)
{
    // Upright paper is taller than wide; paper on its side is at least as wide as tall.
    const bool upright = m_setup.Width < m_setup.Height;
    if (portrait != upright)
        std::swap(m_setup.Width, m_setup.Height);
}

PageSetup CPageSetup::Result() const
{
    PageSetup result = m_setup;
    result.TopMargin = static_cast<float>(m_top->value());
    result.LeftMargin = static_cast<float>(m_left->value());
    result.RightMargin = static_cast<float>(m_right->value());
    result.BottomMargin = static_cast<float>(m_bottom->value());
    return result;
}

bool CPageSetup::Edit(PageSetup& setup, QWidget* parent)
{
    CPageSetup dialog(setup, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    setup = dialog.Result();
    return true;
}

} // namespace corrieval
