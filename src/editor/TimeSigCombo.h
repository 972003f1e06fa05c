#pragma once

#include <QComboBox>

namespace corrieval {

class CTimeSig;

// The list of time signatures, each with its picture and name; the item index is the signature's
// type, "None" first and "Custom" last.
class CTimeSigCombo : public QComboBox {
    Q_OBJECT

public:
    explicit CTimeSigCombo(QWidget* parent = nullptr);

    // Fills the list and chooses the type of `current`.
    void Fill(const CTimeSig& current);
    std::int32_t Type() const { return currentIndex(); }
    bool IsCustom() const;
};

} // namespace corrieval
