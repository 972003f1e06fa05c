#pragma once

#include "model/CorrievalDoc.h"

#include <QDialog>

class QDoubleSpinBox;
class QRadioButton;

namespace corrieval {

// "Page Setup": the orientation of the tune's paper and the four page margins, in inches.
class CPageSetup : public QDialog {
    Q_OBJECT

public:
    static constexpr double MinMargin = 0.1;
    static constexpr double MaxMargin = 12.0;

    CPageSetup(const PageSetup& setup, QWidget* parent = nullptr);

    // What the dialog holds now: the paper turned to the chosen orientation, and the margins.
    PageSetup Result() const;

    // Shows the dialog over `parent`; true and `setup` updated on OK.
    static bool Edit(PageSetup& setup, QWidget* parent);

private:
    void SetPortrait(bool portrait);

    PageSetup m_setup;
    QRadioButton* m_portrait;
    QRadioButton* m_landscape;
    QDoubleSpinBox* m_top;
    QDoubleSpinBox* m_left;
    QDoubleSpinBox* m_right;
    QDoubleSpinBox* m_bottom;
};

} // namespace corrieval
