#pragma once

#include "editor/CorrievalView.h"
#include "editor/ViewHost.h"
#include "model/ActiveView.h"
#include "model/CorrievalDoc.h"
#include "notation/NoteBase.h"

#include <QCoreApplication>
#include <QTest>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace corrieval::testing {

// The frame's part for a view under test: it records what the view tells it.
class TestHost : public ViewHost {
public:
    QString TakePendingImport() override
    {
        ++Takes;
        return std::exchange(Pending, QString());
    }
    bool AutoZoom() const override { return Auto; }
    void ZoomChanged(const CCorrievalView&, float zoom) override { Zooms.push_back(zoom); }
    void TuneImported(CCorrievalView&, int tempo) override { Tempos.push_back(tempo); }
    CNoteBase* PalettePrototype(int entry) const override
    {
        return entry >= 0 && entry < static_cast<int>(Prototypes.size()) ? Prototypes[entry].get() : nullptr;
    }
    PaletteRange PaletteEntries(int galleryId) const override
    {
        const auto found = Palettes.find(galleryId);
        return found != Palettes.end() ? found->second : PaletteRange{};
    }
    bool RestartPlay() override
    {
        Restarts += Playing ? 1 : 0;
        return Playing;
    }
    void ShowContextMenu(const QPoint& globalPos) override { Menus.push_back(globalPos); }

    QString Pending;
    int Takes = 0;
    bool Auto = false;
    std::vector<float> Zooms;
    std::vector<int> Tempos;
    std::vector<std::unique_ptr<CNoteBase>> Prototypes; // the palette entries, by index
    std::map<int, PaletteRange> Palettes;               // by gallery command
    bool Playing = false;                               // what RestartPlay finds
    int Restarts = 0;
    std::vector<QPoint> Menus; // where context menus were asked for
};

// A view of a tune in a window of its own, the active view while it lives, as the frame makes it.
struct ShownView {
    explicit ShownView(std::unique_ptr<CCorrievalDoc> tune, QSize size = {900, 700}, bool autoZoom = false)
        : Doc(std::move(tune))
    {
        Host.Auto = autoZoom;
        View = std::make_unique<CCorrievalView>(*Doc, Host);
        SetActiveViewProvider([this] { return View.get(); });
        View->resize(size);
    }
    ~ShownView() { SetActiveViewProvider(nullptr); }

    void Show()
    {
        View->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(View.get()));
        QCoreApplication::processEvents();
    }
    QImage Grab() const { return View->viewport()->grab().toImage(); }

    TestHost Host;
    std::unique_ptr<CCorrievalDoc> Doc;
    std::unique_ptr<CCorrievalView> View;
};

} // namespace corrieval::testing
