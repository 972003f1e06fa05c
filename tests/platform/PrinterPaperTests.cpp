#include "model/CorrievalDoc.h"
#include "model/SessionState.h"
#include "platform/PrinterPaper.h"
#include "platform/SettingsStore.h"
#include "support/TempConfigDir.h"

#include <QGuiApplication>
#include <QPageSize>
#include <QPrinterInfo>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

TEST(PrinterPaper, ALocaleThatMeasuresInUsInchesGetsLetterAndEveryOtherA4)
{
    EXPECT_EQ(platform::PaperForLocale(QLocale(QLocale::English, QLocale::UnitedStates)).id(),
              QPageSize::Letter);
    EXPECT_EQ(platform::PaperForLocale(QLocale(QLocale::German, QLocale::Germany)).id(), QPageSize::A4);
    EXPECT_EQ(platform::PaperForLocale(QLocale(QLocale::English, QLocale::UnitedKingdom)).id(),
              QPageSize::A4);
}

TEST(PrinterPaper, NewTunesTakeTheDefaultPrintersPaperElseTheLocalesOrInStrictModeEightByEight)
{
    int argc = 1;
    char name[] = "platform_tests";
    char* argv[] = {name, nullptr};
    QGuiApplication app(argc, argv);
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    const QSizeF printerPaper = printer.isNull() ? QSizeF() : printer.defaultPageSize().size(QPageSize::Inch);
    const SessionState saved = Session();
    const testing::TempConfigDir config;

    for (const bool strict : {false, true}) {
        Session() = saved;
        SettingsStore settings(QString::fromLatin1(SettingsKeyPath));
        settings.WriteInt(QStringLiteral("StrictBWW"), strict ? 1 : 0);
        ASSERT_EQ(settings.Sync(), "");
        platform::UseDefaultPrinterPaper();
        const CCorrievalDoc doc;
        const QSizeF localePaper = platform::PaperForLocale(QLocale()).size(QPageSize::Inch);
        const QSizeF expected = !printerPaper.isEmpty() ? printerPaper : strict ? QSizeF(8, 8) : localePaper;
        EXPECT_NEAR(doc.PageWidth, expected.width(), 0.001) << "strict " << strict;
        EXPECT_NEAR(doc.PageHeight, expected.height(), 0.001) << "strict " << strict;
    }
    Session() = saved;
}

} // namespace
} // namespace corrieval
