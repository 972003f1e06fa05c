// Writes the bundled example: a two-part tune laid out as the quick-start templates are, with a
// title, repeats, first and second time bars and a few notes.

#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-example-score OUT.skb\n");
        return 2;
    }
    try {
        corrieval::fixtures::TuneShape shape;
        shape.Groups = 4;
        shape.Columns = 4;
        shape.NotesPerBar = 4;
        shape.Repeats = true;
        auto doc = corrieval::fixtures::BuildTune(shape);
        corrieval::SaveScore(*doc, QString::fromLocal8Bit(argv[1]));
    } catch (const std::exception& e) {
        std::fprintf(stderr, "make-example-score: %s: %s\n", argv[1], e.what());
        return 1;
    }
    return 0;
}
