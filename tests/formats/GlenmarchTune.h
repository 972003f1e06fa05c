#pragma once

#include "formats/glenmarch/GlenmarchFile.h"
#include "formats/glenmarch/PipeDoc.h"

#include <QByteArray>
#include <QString>
#include <initializer_list>
#include <memory>

namespace corrieval::testing {

// Older tunes built in code, as no Glenmarch files are to be had: bars one inch wide placed by
// line and column, notes by code and older stave position (19 Low G to 27 High A).
struct GlenmarchTune {
    CPipeDoc Doc;

    CBar& AddBar(std::int32_t line, std::int32_t column, std::int32_t width = 1000)
    {
        auto bar = std::make_unique<CBar>();
        bar->Line = line;
        bar->Column = column;
        bar->Left = 500 + (column - 1) * width;
        bar->Top = 1000 * line;
        bar->Width = width;
        Doc.Bars.push_back(std::move(bar));
        return *Doc.Bars.back();
    }

    CNote& AddNote(CBar& bar, std::int32_t code, std::int32_t position, std::int32_t x, std::int32_t dot = 0)
    {
        auto note = std::make_unique<CNote>();
        note->Id = Doc.NextNoteId++;
        note->Index = static_cast<std::int32_t>(bar.Notes.size()) + 1;
        note->Code = code;
        note->Pitch = position;
        note->X = x;
        note->Dot = dot;
        bar.Notes.push_back(std::move(note));
        return *bar.Notes.back();
    }

    CNoteGroup& Beam(CBar& bar, std::initializer_list<const CNote*> notes)
    {
        CNoteGroup& group = *bar.NewGroup(Doc);
        for (const CNote* note : notes)
            group.Add(*note);
        return group;
    }

    CTie& Tie(const CNote& first, const CNote& second, const CNote* third = nullptr)
    {
        auto tie = std::make_unique<CTie>();
        tie->First = first.Id;
        tie->Second = second.Id;
        tie->Third = third != nullptr ? third->Id : 0;
        Doc.Ties.push_back(std::move(tie));
        return *Doc.Ties.back();
    }

    CPart& AddPart(std::int32_t number, std::int32_t bars)
    {
        auto part = std::make_unique<CPart>();
        part->Number = number;
        part->BarCount = bars;
        Doc.Parts.push_back(std::move(part));
        return *Doc.Parts.back();
    }

    // A small tune that uses every record: two bars, notes of both record versions, a beam, a
    // tie across the bar line, a heading and two parts.
    static GlenmarchTune EveryRecord()
    {
        GlenmarchTune tune;
        tune.Doc.TimeSigText = QStringLiteral("$");
        tune.Doc.CentreText.Text = QStringLiteral("The Ale is Dear");
        CBar& first = tune.AddBar(1, 1);
        const CNote& a = tune.AddNote(first, 3, 20, 200);
        const CNote& b = tune.AddNote(first, 3, 23, 400, 1);
        tune.Beam(first, {&a, &b});
        CBar& second = tune.AddBar(1, 2);
        second.Version = 1;
        CNote& c = tune.AddNote(second, 2, 23, 300);
        c.Version = 1;
        tune.Tie(b, c);
        tune.AddPart(1, 2);
        tune.AddPart(2, 0).Version = 1;
        return tune;
    }

    QByteArray Bytes() { return StoreGlenmarch(Doc, QStringLiteral("tune.glm")); }
    // The tune as it reads back from its file.
    std::unique_ptr<CPipeDoc> Reread() { return ReadGlenmarch(Bytes(), QStringLiteral("tune.glm")); }
};

} // namespace corrieval::testing
