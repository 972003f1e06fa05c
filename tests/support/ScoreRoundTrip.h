#pragma once

#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

#include <gtest/gtest.h>
#include <memory>

namespace corrieval::testing {

// The document stored and read back. The copy must store to the same bytes again: nothing may be
// lost or changed on the way through a file.
inline std::unique_ptr<CCorrievalDoc> Reloaded(CCorrievalDoc& doc)
{
    const QByteArray bytes = StoreScore(doc, QStringLiteral("tune.skb"));
    auto read = ReadScore(bytes, QStringLiteral("tune.skb"));
    EXPECT_EQ(StoreScore(*read, QStringLiteral("tune.skb")), bytes);
    return read;
}

} // namespace corrieval::testing
