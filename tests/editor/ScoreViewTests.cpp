#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "fixtures/ScoreFixtures.h"
#include "formats/GlenmarchTune.h"
#include "model/CorrievalDoc.h"
#include "model/SessionState.h"
#include "model/TunePage.h"
#include "platform/MovementDefinitions.h"
#include "support/RecordingMessages.h"
#include "support/TempConfigDir.h"
#include "ShownView.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinterInfo>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace corrieval {
namespace {

using testing::ShownView;

constexpr QRgb kDesk = 0xFF646464;

// Records the rectangles the viewport is asked to paint.
class PaintRecorder : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            Rects.push_back(static_cast<QPaintEvent*>(event)->rect());
        return false;
    }
    std::vector<QRect> Rects;
};

std::unique_ptr<CCorrievalDoc> A4Tune(int pages)
{
    return fixtures::BuildTune({.Pages = pages, .Groups = 3, .Parts = 2, .Columns = 4, .NotesPerBar = 4});
}

// The pixel at a point in the viewport's logical pixels, on a screen of any pixel ratio.
QRgb Pixel(const QImage& image, QPointF at)
{
    return image.pixel((at * image.devicePixelRatio()).toPoint()) | 0xFF000000;
}

// The zoom that fits the page to the window's width as it is now.
float FitZoom(const ShownView& shown)
{
    return ViewTransform::FitToWidth(shown.View->viewport()->width(),
                                     static_cast<float>(shown.View->logicalDpiX()), shown.Doc->PageWidth);
}

TEST(ScoreView, AnEmptyDocumentIsAGreyDeskOfNoSizeAndSpaceIsLeftToTheFrame)
{
    ShownView shown(std::make_unique<CCorrievalDoc>());
    shown.Show();
    CCorrievalView& view = *shown.View;
    EXPECT_EQ(view.Transform().Extent(), QSize(0, 0));
    EXPECT_EQ(view.PageAt({1, 1}), nullptr);
    view.FitToWidth();
    EXPECT_EQ(view.Zoom(), 1.0f);
    const QImage image = shown.Grab();
    EXPECT_EQ(Pixel(image, {5, 5}), kDesk);
    EXPECT_EQ(Pixel(image, view.viewport()->rect().center()), kDesk);

    CommandState state{true, true};
    EXPECT_TRUE(view.UpdateCommand(command::Print, state));
    EXPECT_FALSE(state.enabled); // nothing to print
    EXPECT_TRUE(view.UpdateCommand(command::Copy, state));
    EXPECT_FALSE(state.enabled); // nothing to copy
    EXPECT_TRUE(view.UpdateCommand(command::Paste, state));
    EXPECT_FALSE(state.enabled); // no page to paste onto

    // Space plays or stops: the view leaves it to the frame.
    for (QWidget* target : {static_cast<QWidget*>(&view), view.viewport()}) {
        QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
        QCoreApplication::sendEvent(target, &space);
        EXPECT_FALSE(space.isAccepted());
    }
}

TEST(ScoreView, ZoomIsClampedAndFitToWidthFollowsTheWindowUntilAZoomOfItsOwn)
{
    ShownView shown(A4Tune(1), {900, 600});
    shown.Show();
    CCorrievalView& view = *shown.View;
    view.SetZoom(20);
    EXPECT_EQ(view.ZoomPercent(), 50);
    view.SetZoom(1000);
    EXPECT_EQ(view.ZoomPercent(), 300);

    view.FitToWidth();
    view.resize(1400, 600);
    QCoreApplication::processEvents();
    EXPECT_TRUE(view.ZoomsToWidth());
    EXPECT_FLOAT_EQ(view.Zoom(), FitZoom(shown));
    EXPECT_EQ(shown.Host.Zooms.back(), view.Zoom());
    view.SetZoom(120);
    EXPECT_FALSE(view.ZoomsToWidth());
    view.resize(1000, 600);
    QCoreApplication::processEvents();
    EXPECT_FLOAT_EQ(view.Zoom(), 1.2f);
}

TEST(ScoreView, PageAtPointUsesTheInnerRectangleLeftInclusiveRightExclusive)
{
    ShownView shown(A4Tune(2));
    const auto& pages = shown.Doc->Pages;
    CCorrievalView& view = *shown.View;
    const RectF inner = pages[0]->ContentBox();
    EXPECT_EQ(view.PageAt({inner.X, inner.Y}), pages[0].get());
    EXPECT_EQ(view.PageAt({std::nextafter(inner.Right(), 0.0f), inner.Y}), pages[0].get());
    EXPECT_EQ(view.PageAt({inner.Right(), inner.Y}), nullptr);
    EXPECT_EQ(view.PageAt({std::nextafter(inner.X, 0.0f), inner.Y}), nullptr);
    EXPECT_EQ(view.PageAt({inner.X, inner.Bottom()}), nullptr); // the margins between the pages
    const RectF second = pages[1]->ContentBox();
    EXPECT_EQ(view.PageAt({second.X + 1, second.Y}), pages[1].get());
}

TEST(ScoreView, AChangedObjectRepaintsItsOwnRectangleOnly)
{
    ShownView shown(A4Tune(1));
    shown.Show();
    PaintRecorder recorder;
    shown.View->viewport()->installEventFilter(&recorder);
    QCoreApplication::processEvents();
    recorder.Rects.clear();

    const CScoObj& title = *shown.Doc->Pages[0]->ChildAt(0);
    shown.View->InvalidateObject(title);
    QTRY_VERIFY(!recorder.Rects.empty());
    // The bounds grown by a tenth of an inch all round, for what reaches out of them.
    const RectF b = title.GetBounds();
    const QRect expected = shown.View->Transform().DocumentRectToDevice(
        {b.X - 0.1f, b.Y - 0.1f, b.Width + 0.2f, b.Height + 0.2f});
    ASSERT_EQ(recorder.Rects.size(), 1u);
    EXPECT_EQ(recorder.Rects[0], expected & shown.View->viewport()->rect());
    EXPECT_LT(expected.width() * expected.height(),
              shown.View->viewport()->width() * shown.View->viewport()->height() / 4);
}

TEST(ScoreView, FirstActivationAppliesTheSavedZoomOnce)
{
    {
        ShownView shown(A4Tune(1));
        shown.Doc->LoadedZoom = 1.5f;
        shown.Doc->ZoomPending = 1;
        shown.View->OnActivateView();
        EXPECT_EQ(shown.View->ZoomPercent(), 150);
        EXPECT_EQ(shown.Doc->ZoomPending, 0);
        EXPECT_EQ(shown.Host.Zooms, std::vector<float>{1.5f});
        shown.View->SetZoom(100);
        shown.View->OnActivateView(); // later activations leave the zoom alone
        EXPECT_EQ(shown.View->ZoomPercent(), 100);
    }
    {
        // Negative: follow the width; and a tune never activated does it at its first paint.
        ShownView shown(A4Tune(1));
        shown.Doc->LoadedZoom = -1;
        shown.Doc->ZoomPending = 1;
        shown.Show();
        EXPECT_TRUE(shown.View->ZoomsToWidth());
    }
    {
        // A saved zoom not marked pending is not applied; the autozoom fits the width once.
        ShownView shown(A4Tune(1), {1400, 600}, true);
        shown.Doc->LoadedZoom = 2.0f;
        shown.View->OnActivateView();
        EXPECT_FLOAT_EQ(shown.View->Zoom(), FitZoom(shown));
        EXPECT_FALSE(shown.View->ZoomsToWidth());
    }
    for (float damaged : {std::numeric_limits<float>::quiet_NaN(), 0.0f, 1e30f}) {
        ShownView shown(A4Tune(1));
        shown.Doc->LoadedZoom = damaged;
        shown.Doc->ZoomPending = 1;
        shown.View->OnActivateView();
        EXPECT_GE(shown.View->Zoom(), 0.5f);
        EXPECT_LE(shown.View->Zoom(), 3.0f);
    }
}

TEST(ScoreView, PreviewShowsThePagesAndChecksItsCommandWhileOpen)
{
    ShownView shown(A4Tune(2));
    shown.Show();
    CCorrievalView& view = *shown.View;
    bool seen = false;
    QTimer::singleShot(0, [&] {
        auto* preview = qobject_cast<QPrintPreviewDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(preview, nullptr);
        CommandState state;
        EXPECT_TRUE(view.UpdateCommand(command::PrintPreview, state));
        EXPECT_TRUE(state.checked);
        auto* pages = preview->findChild<QPrintPreviewWidget*>();
        ASSERT_NE(pages, nullptr);
        EXPECT_EQ(pages->pageCount(), 2);
        EXPECT_TRUE(view.PrintIdle()); // only while the pages are drawn
        if (const QString folder = qEnvironmentVariable("CORRIEVAL_VIEW_SHOTS"); !folder.isEmpty())
            preview->grab().save(QDir(folder).filePath(QStringLiteral("preview.png")));
        seen = true;
        preview->reject();
    });
    view.RunCommand(command::PrintPreview);
    EXPECT_TRUE(seen);
    CommandState state;
    view.UpdateCommand(command::PrintPreview, state);
    EXPECT_FALSE(state.checked);
}

TEST(ScoreView, WithoutAPrinterQuickPrintWritesTheChosenPdf)
{
    if (!QPrinterInfo::availablePrinterNames().isEmpty())
        GTEST_SKIP() << "this machine has a printer, and the test must not print on it";
    ShownView shown(A4Tune(2));
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("reel.pdf"));
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->selectFile(pdf);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    shown.View->RunCommand(command::QuickPrint);
    QFile file(pdf);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count("/Type /Page\n"), 2);
    if (const QString folder = qEnvironmentVariable("CORRIEVAL_VIEW_SHOTS"); !folder.isEmpty())
        QFile::copy(pdf, QDir(folder).filePath(QStringLiteral("quick-print.pdf")));
}

// A tune imported as the import command leaves it for a new view: the bundled one unless told.
struct ImportedExample : ShownView {
    explicit ImportedExample(const QString& path = QStringLiteral(CORRIEVAL_EXAMPLE_BWW))
        : ShownView(NewTune())
    {
        EXPECT_EQ(InstallMovementDefinitions(), QString());
        Host.Pending = path;
        Show();
        QTRY_VERIFY(!Host.Tempos.empty());
    }
    static std::unique_ptr<CCorrievalDoc> NewTune()
    {
        auto doc = std::make_unique<CCorrievalDoc>();
        doc->OnNewDocument();
        return doc;
    }
    testing::TempConfigDir Config;
    testing::RecordingMessages Messages;
};

TEST(ScoreView, AGlenmarchTuneIsImportedByItsExtension)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Ale.GLM"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(testing::GlenmarchTune::EveryRecord().Bytes());
    file.close();

    ImportedExample shown(path);
    EXPECT_TRUE(shown.Doc->HasMusic());
    EXPECT_TRUE(shown.Messages.Texts.isEmpty()) << qPrintable(shown.Messages.Texts.join('\n'));
}

TEST(ScoreView, AMissingImportIsReportedAndLeavesTheTuneEmpty)
{
    testing::RecordingMessages messages;
    ShownView shown(ImportedExample::NewTune());
    shown.Host.Pending = QDir::temp().filePath(QStringLiteral("no-such-tune.bww"));
    shown.Show();
    QTRY_VERIFY(!messages.Texts.isEmpty());
    EXPECT_EQ(messages.Texts.front(), QStringLiteral("Error opening the file"));
    EXPECT_FALSE(shown.Doc->HasMusic());
    EXPECT_TRUE(shown.Host.Tempos.empty());
}

// What a piper sees: the bundled tune, imported once at the first paint however often the view
// paints again, at the zooms of the status bar and fitted to the width, the paper on a grey desk
// and centred on it while narrower than the window. Set CORRIEVAL_VIEW_SHOTS to a folder to keep
// the pictures.
TEST(ScoreView, TheBundledTuneIsImportedOnceAndLooksRightAtEveryZoom)
{
    ImportedExample shown;
    EXPECT_TRUE(shown.Doc->HasMusic());
    CCorrievalView& view = *shown.View;
    const QString folder = qEnvironmentVariable("CORRIEVAL_VIEW_SHOTS");
    for (const int percent : {50, 100, 200, -1}) {
        view.SetZoom(percent);
        QCoreApplication::processEvents();
        const QImage image = shown.Grab();
        if (!folder.isEmpty())
            image.save(QDir(folder).filePath(QStringLiteral("view-%1.png").arg(percent < 0 ? QStringLiteral("fit") : QString::number(percent))));
        int dark = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                dark += qGray(image.pixel(x, y)) < 80 ? 1 : 0;
        }
        EXPECT_GT(dark, 500) << percent;
        // The paper begins 0.1 inch in from the page's edge.
        const ViewTransform t = view.Transform();
        EXPECT_NE(Pixel(image, t.DocumentToDevice({0.15f, 1.0f})), kDesk) << percent;
        const QPointF left = t.DocumentToDevice({0, 1});
        const QPointF right = t.DocumentToDevice({shown.Doc->PageWidth, 1});
        const int window = view.viewport()->width();
        if (right.x() - left.x() + 10 < window) {
            EXPECT_NEAR(left.x(), window - right.x(), 1.0) << percent;
            EXPECT_EQ(Pixel(image, {left.x() - 3, 50}), kDesk) << percent;
        } else if (right.x() - left.x() > window) {
            EXPECT_GT(view.horizontalScrollBar()->maximum(), 0) << percent;
        }
    }
    EXPECT_EQ(shown.Host.Zooms.back(), view.Zoom());
    EXPECT_EQ(shown.Host.Takes, 1);
    EXPECT_EQ(shown.Host.Tempos.size(), 1u);
    EXPECT_TRUE(shown.Messages.Texts.isEmpty()) << qPrintable(shown.Messages.Texts.join('\n'));
}

} // namespace
} // namespace corrieval
