#include "playback/SampleBank.h"

#include <memory>

namespace corrieval::SampleBank {

std::int16_t* Slot(std::size_t index)
{
    // One block for the process, never freed and never moved: notes being played point into it.
    static const std::unique_ptr<std::int16_t[]> bank(new std::int16_t[SlotCount * SlotBytes / 2]());
    return bank.get() + index * (SlotBytes / 2);
}

} // namespace corrieval::SampleBank
