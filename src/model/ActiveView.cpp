#include "model/ActiveView.h"

#include <utility>

namespace corrieval {

namespace {
std::function<ScoreView*()>& Provider()
{
    static std::function<ScoreView*()> provider;
    return provider;
}
} // namespace

ScoreView* ActiveView()
{
    const auto& provider = Provider();
    return provider ? provider() : nullptr;
}

void SetActiveViewProvider(std::function<ScoreView*()> provider) { Provider() = std::move(provider); }

} // namespace corrieval
