#pragma once

#include "formats/archive/ArchiveError.h"

#include <gtest/gtest.h>

namespace corrieval::testing {

// Runs `read`, which must refuse what it reads, and returns the error it threw. A read that
// goes through is a test failure.
template <class Read> ArchiveError RefusalOf(Read&& read)
{
    try {
        read();
    } catch (const ArchiveError& e) {
        return e;
    }
    ADD_FAILURE() << "damaged bytes were read without complaint";
    return ArchiveError(ArchiveCause::EndOfFile, {}, 0);
}

} // namespace corrieval::testing
