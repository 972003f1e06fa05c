#include "formats/archive/Archive.h"
#include "formats/score/ScoreRecords.h"
#include "notation/RepeatTiming.h"
#include "notation/TieEx.h"
#include "support/ArchiveRefusal.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace corrieval {
namespace {

using testing::RefusalOf;

// Bytes written as hexadecimal, the spaces only to read them by.
QByteArray Hex(const char* digits)
{
    return QByteArray::fromHex(digits);
}

CArchive Loader(const QByteArray& bytes)
{
    return CArchive(bytes, ScoreClasses(), QStringLiteral("t.skb"), nullptr);
}

TEST(Archive, CountsWidenAtFFFFAndStringsAreWrittenWideAndReadInBothForms)
{
    CArchive out(ScoreClasses(), {}, nullptr);
    out.WriteCount(0xFFFE);
    out.WriteCount(0xFFFF);
    out.WriteString(QStringLiteral("Bb"));
    EXPECT_EQ(out.Bytes(), Hex("feff ffff ffff0000 fffeff 02 4200 6200"));
    const QString longText(300, QLatin1Char('x'));
    out.WriteString(longText);
    EXPECT_EQ(out.Bytes().mid(16, 6), Hex("fffeff ff 2c01"));
    CArchive in = Loader(out.Bytes() + Hex("07"));
    EXPECT_EQ(in.ReadCount(), 0xFFFEu);
    EXPECT_EQ(in.ReadCount(), 0xFFFFu);
    EXPECT_EQ(in.ReadString(), QStringLiteral("Bb"));
    EXPECT_EQ(in.ReadString(), longText);
    bool flag = false;
    in.Sync(flag);
    EXPECT_TRUE(flag); // any byte but zero

    // The older 8-bit form, in the Windows Western code page.
    EXPECT_EQ(Loader(Hex("03 41 80 e9")).ReadString(), QString::fromUtf8("A\u20AC\u00E9"));
    EXPECT_EQ(Loader(Hex("ff 0100 7a")).ReadString(), QStringLiteral("z"));
}

// A length of two thousand million characters is refused before anything is allocated.
TEST(Archive, AStringLongerThanTheFileIsRefused)
{
    const ArchiveError e = RefusalOf([] { Loader(Hex("fffeff ff ffff ffffff7f 6100")).ReadString(); });
    EXPECT_EQ(e.Cause(), ArchiveCause::EndOfFile);
    EXPECT_EQ(e.Offset(), 0u);
}

TEST(Archive, ObjectsAreNumberedWithClassesAndReferredToAgainButOwnedOnce)
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
    EXPECT_EQ(out.Bytes(), Hex("ffff 0100 0600") + "CTieEx" + Hex("05000000 0180 06000000 0200 0000"));

    CArchive in = Loader(out.Bytes());
    std::unique_ptr<CTieEx> a = in.ReadOwned<CTieEx>();
    CTieEx* b = in.ReadReference<CTieEx>();
    std::unique_ptr<CObject> bOwned = in.Claim(b);
    EXPECT_EQ(in.ReadReference<CTieEx>(), a.get());
    EXPECT_EQ(in.ReadReference<CTieEx>(), nullptr);
    EXPECT_EQ(std::pair(a->Id, b->Id), std::pair(5, 6));

    // A back reference where an object of its own belongs would give the first tie two owners.
    CArchive twice = Loader(out.Bytes());
    const auto owned = twice.ReadOwned<CTieEx>();
    const auto next = twice.ReadOwned<CTieEx>();
    const ArchiveError e = RefusalOf([&twice] { twice.ReadOwned<CTieEx>(); });
    EXPECT_EQ(e.Cause(), ArchiveCause::BadIndex);
    EXPECT_EQ(e.Offset(), 22u);
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
    out.WriteList(ties);                // class 1, objects 2 to 40001
    out.WriteObject(&firstMarker);      // class 40002, object 40003
    out.WriteObject(&secondMarker);     // class reference 40002 | top bit, object 40004
    out.WriteObject(ties.back().get()); // back reference 40001
    const QByteArray& bytes = out.Bytes();
    EXPECT_TRUE(bytes.contains(Hex("ff7f 429c0080")));
    EXPECT_EQ(bytes.right(6), Hex("ff7f 419c0000"));

    CArchive in = Loader(bytes);
    std::vector<std::unique_ptr<CTieEx>> read;
    in.ReadOwnedList(read);
    ASSERT_EQ(read.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(read[0x7FFD]->Id, 0x7FFD);
    const auto marker = in.ReadOwned<CRepeatTiming>();
    EXPECT_EQ(in.ReadOwned<CRepeatTiming>()->RepeatId, 9);
    EXPECT_EQ(in.ReadReference<CTieEx>(), read.back().get());
    EXPECT_TRUE(in.AtEnd());
}

} // namespace
} // namespace corrieval
