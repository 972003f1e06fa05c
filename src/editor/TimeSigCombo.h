#pragma once

#include <QComboBox>
#include <cstdint>

namespace corrieval {

// The list of time signatures, one item per type in the order of the type numbers, each with a
// picture of the signature and its name; the item index is the type.
class CTimeSigCombo : public QComboBox {
    Q_OBJECT

public:
    explicit CTimeSigCombo(QWidget* parent = nullptr);

    std::int32_t Type() const { return currentIndex(); }
    void SetType(std::int32_t type) { setCurrentIndex(type); }
    bool IsCustom() const;
};

} // namespace corrieval
