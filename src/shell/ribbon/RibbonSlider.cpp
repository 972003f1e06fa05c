#include "shell/ribbon/RibbonSlider.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>

namespace corrieval::ribbon {

namespace {

QToolButton* MakeStepButton(const QString& sign, const QString& name, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setText(sign);
    button->setAccessibleName(name);
    button->setAutoRaise(true);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setObjectName(QStringLiteral("ribbonStepButton"));
    return button;
}

} // namespace

RibbonSlider::RibbonSlider(int minimum, int maximum, int value, int width, QWidget* parent)
    : QWidget(parent), m_minus(MakeStepButton(QStringLiteral("\u2212"), tr("Less"), this)),
      m_slider(new QSlider(Qt::Horizontal, this)),
      m_plus(MakeStepButton(QStringLiteral("+"), tr("More"), this))
{
    m_slider->setRange(minimum, maximum);
    m_slider->setValue(value);
    m_slider->setSingleStep(1);
    m_slider->setFixedWidth(width);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(1);
    layout->addWidget(m_minus);
    layout->addWidget(m_slider);
    layout->addWidget(m_plus);
    connect(m_slider, &QSlider::valueChanged, this, &RibbonSlider::ValueChanged);
    connect(m_minus, &QToolButton::clicked, this, [this] { Step(-1); });
    connect(m_plus, &QToolButton::clicked, this, [this] { Step(1); });
}

void RibbonSlider::SetValue(int value)
{
    const QSignalBlocker quiet(m_slider);
    m_slider->setValue(value);
}

int RibbonSlider::Value() const
{
    return m_slider->value();
}

void RibbonSlider::Step(int by)
{
    m_slider->setValue(m_slider->value() + by);
}

} // namespace corrieval::ribbon
