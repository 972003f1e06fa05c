#include "formats/archive/Archive.h"
#include "formats/score/ScoreRecords.h"
#include "notation/RepeatTiming.h"
#include "notation/TieEx.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace corrieval {
namespace {

QByteArray Bytes(std::initializer_list<int> values)
{
    QByteArray out;
    for (int v : values)
        out.append(static_cast<char>(v));
    return out;
}

CArchive Loader(const QByteArray& bytes) { return CArchive(bytes, ScoreClasses(), QStringLiteral("t.skb"), nullptr); }

TEST(Archive, PrimitivesAreLittleEndian)
{
    CArchive out(ScoreClasses(), {}, nullptr);
    std::int32_t i = -2;
    float f = 1.0f;
    bool b = true;
    std::uint16_t w = 0x1234;
    out.Sync(i);
    out.Sync(f);
    out.Sync(b);
    out.Sync(w);
    EXPECT_EQ(out.Bytes(), Bytes({0xFE, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x80, 0x3F, 0x01, 0x34, 0x12}));

    CArchive in = Loader(Bytes({0xFE, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x80, 0x3F, 0x07}));
    in.Sync(i);
    in.Sync(f);
    in.Sync(b);
    EXPECT_EQ(i, -2);
    EXPECT_EQ(f, 1.0f);
    EXPECT_TRUE(b); // any non-zero byte reads as true
}

TEST(Archive, CountsWidenAtFFFF)
{
    CArchive out(ScoreClasses(), {}, nullptr);
    out.WriteCount(0xFFFE);
    out.WriteCount(0xFFFF);
    EXPECT_EQ(out.Bytes(), Bytes({0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}));
    CArchive in = Loader(out.Bytes());
    EXPECT_EQ(in.ReadCount(), 0xFFFEu);
    EXPECT_EQ(in.ReadCount(), 0xFFFFu);
}

TEST(Archive, StringsAreWrittenWideAndReadInBothForms)
{
    CArchive out(ScoreClasses(), {}, nullptr);
    out.WriteString(QStringLiteral("Bb"));
    EXPECT_EQ(out.Bytes(), Bytes({0xFF, 0xFE, 0xFF, 0x02, 'B', 0, 'b', 0}));

    const QString longText(300, QLatin1Char('x'));
    CArchive longOut(ScoreClasses(), {}, nullptr);
    longOut.WriteString(longText);
    EXPECT_EQ(longOut.Bytes().left(6), Bytes({0xFF, 0xFE, 0xFF, 0xFF, 0x2C, 0x01}));
    EXPECT_EQ(Loader(longOut.Bytes()).ReadString(), longText);

    // The older 8-bit form, in the Windows Western code page.
    CArchive narrow = Loader(Bytes({0x03, 'A', 0x80, 0xE9}));
    EXPECT_EQ(narrow.ReadString(), QString::fromUtf8("A\u20AC\u00E9"));
    CArchive narrowLong = Loader(Bytes({0xFF, 0x01, 0x00, 'z'}));
    EXPECT_EQ(narrowLong.ReadString(), QStringLiteral("z"));
}

TEST(Archive, AStringLongerThanTheFileIsRefusedBeforeAllocating)
{
    CArchive in = Loader(Bytes({0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 'a', 0}));
    try {
        in.ReadString();
        FAIL();
    } catch (const ArchiveError& e) {
        EXPECT_EQ(e.Cause(), ArchiveCause::EndOfFile);
        EXPECT_EQ(e.Offset(), 0u);
    }
}

TEST(Archive, ObjectsAreNumberedWithClassesAndReferredToAgain)
{
    CTieEx first;
    first.Id = 5;
    CTieEx second;
    second.Id = 6;
    CArchive out(ScoreClasses(), {}, nullptr);
    out.WriteObject(&first);
    out.WriteObject(&second);
    out.WriteObject(&first);
    out.WriteObject(nullptr);
    // new class (number 1), object 2, class reference 0x8001, object 3, back reference 2, null
    EXPECT_EQ(out.Bytes(), Bytes({0xFF, 0xFF, 0x01, 0x00, 0x06, 0x00, 'C', 'T', 'i', 'e', 'E', 'x', 5, 0, 0, 0,
                                  0x01, 0x80, 6, 0, 0, 0, 0x02, 0x00, 0x00, 0x00}));

    CArchive in = Loader(out.Bytes());
    std::unique_ptr<CTieEx> a = in.ReadOwned<CTieEx>();
    CTieEx* b = in.ReadReference<CTieEx>();
    std::unique_ptr<CObject> bOwned = in.Claim(b);
    EXPECT_EQ(in.ReadReference<CTieEx>(), a.get());
    EXPECT_EQ(in.ReadReference<CTieEx>(), nullptr);
    EXPECT_EQ(a->Id, 5);
    EXPECT_EQ(b->Id, 6);
    EXPECT_EQ(bOwned.get(), b);
}

TEST(Archive, NumbersPast7FFFUseBigTags)
{
    constexpr int count = 40000;
    std::vector<std::unique_ptr<CTieEx>> ties;
    for (int i = 0; i < count; ++i) {
        ties.push_back(std::make_unique<CTieEx>());
        ties.back()->Id = i;
    }
    CRepeatTiming firstMarker;
    CRepeatTiming secondMarker;
    secondMarker.RepeatId = 9;
    CArchive out(ScoreClasses(), {}, nullptr);
    out.WriteList(ties);               // class 1, objects 2 to 40001
    out.WriteObject(&firstMarker);     // class 40002, object 40003
    out.WriteObject(&secondMarker);    // class reference 40002 | top bit, object 40004
    out.WriteObject(ties.back().get()); // back reference 40001

    const QByteArray& bytes = out.Bytes();
    EXPECT_TRUE(bytes.contains(Bytes({0xFF, 0x7F, 0x42, 0x9C, 0x00, 0x80})));
    EXPECT_EQ(bytes.right(6), Bytes({0xFF, 0x7F, 0x41, 0x9C, 0x00, 0x00}));

    CArchive in = Loader(bytes);
    std::vector<std::unique_ptr<CTieEx>> read;
    in.ReadOwnedList(read);
    ASSERT_EQ(read.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(read[0x7FFD]->Id, 0x7FFD);
    auto marker = in.ReadOwned<CRepeatTiming>();
    auto second = in.ReadOwned<CRepeatTiming>();
    EXPECT_EQ(second->RepeatId, 9);
    EXPECT_EQ(in.ReadReference<CTieEx>(), read.back().get());
    EXPECT_TRUE(in.AtEnd());
}

TEST(Archive, DirectionIsEnforced)
{
    CArchive in = Loader(Bytes({0, 0}));
    EXPECT_THROW(in.WriteObject(nullptr), ArchiveError);
    try {
        in.WriteCount(1);
    } catch (const ArchiveError& e) {
        EXPECT_EQ(e.Cause(), ArchiveCause::WriteToReadOnly);
    }
    CArchive out(ScoreClasses(), {}, nullptr);
    try {
        out.ReadCount();
        FAIL();
    } catch (const ArchiveError& e) {
        EXPECT_EQ(e.Cause(), ArchiveCause::ReadFromStore);
    }
}

TEST(Archive, AnObjectCannotBeOwnedTwice)
{
    CTieEx tie;
    CArchive out(ScoreClasses(), {}, nullptr);
    out.WriteObject(&tie);
    out.WriteObject(&tie);
    CArchive in = Loader(out.Bytes());
    auto owned = in.ReadOwned<CTieEx>();
    try {
        in.ReadOwned<CTieEx>();
        FAIL();
    } catch (const ArchiveError& e) {
        EXPECT_EQ(e.Cause(), ArchiveCause::BadIndex);
        EXPECT_EQ(e.Offset(), 16u);
    }
}

} // namespace
} // namespace corrieval
