#include "shell/FrameStatusBar.h"

#include "shell/ribbon/RibbonSlider.h"

#include <QLabel>
#include <QMenu>
#include <QToolButton>

namespace corrieval {

CFrameStatusBar::CFrameStatusBar(QWidget* parent)
    : QStatusBar(parent),
      m_link(new QLabel(QStringLiteral("<a href=\"guide\">Corrieval user guide</a>"))),
      m_instrument(new QLabel),
      m_zoomPane(new QToolButton),
      m_zoomSlider(new ribbon::RibbonSlider(MinZoom, MaxZoom, 100, 100))
{
    m_link->setAccessibleName(QStringLiteral("Link to website"));
    m_link->setToolTip(QStringLiteral("Open the user guide"));
    connect(m_link, &QLabel::linkActivated, this, &CFrameStatusBar::LinkActivated);
    addWidget(m_link);

    m_instrument->setAccessibleName(QStringLiteral("Instrument"));
    m_instrument->setMinimumWidth(120);
    addPermanentWidget(m_instrument);

    m_zoomPane->setAccessibleName(QStringLiteral("Zoom"));
    m_zoomPane->setToolTip(QStringLiteral("Choose a zoom"));
    m_zoomPane->setAutoRaise(true);
    m_zoomPane->setPopupMode(QToolButton::InstantPopup);
    m_zoomPane->setMinimumWidth(56);
    auto* chooser = new QMenu(m_zoomPane);
    for (int percent : ZoomSteps) {
        chooser->addAction(QStringLiteral("%1%").arg(percent), this, [this, percent] { emit ZoomChosen(percent); });
    }
    chooser->addSeparator();
    chooser->addAction(QStringLiteral("Page width"), this, [this] { emit ZoomChosen(-1); });
    m_zoomPane->setMenu(chooser);
    addPermanentWidget(m_zoomPane);

    m_zoomSlider->setAccessibleName(QStringLiteral("Zoom Slider"));
    m_zoomSlider->setToolTip(QStringLiteral("Zoom"));
    connect(m_zoomSlider, &ribbon::RibbonSlider::ValueChanged, this, &CFrameStatusBar::ZoomChosen);
    addPermanentWidget(m_zoomSlider);

    ShowZoom(100);
}

void CFrameStatusBar::ShowZoom(int percent)
{
    m_zoomPane->setText(QStringLiteral("%1%").arg(percent));
    m_zoomSlider->SetValue(percent);
}

void CFrameStatusBar::ShowInstrument(const QString& name, const QString& problem)
{
    m_instrument->setText(problem.isEmpty() ? name : name + QStringLiteral(" (no recordings)"));
    m_instrument->setToolTip(problem.isEmpty() ? QStringLiteral("The instrument that plays") : problem);
}

} // namespace corrieval
