#include "notation/MovementCatalogue.h"

#include "platform/MovementDefinitions.h"

#include <algorithm>

namespace corrieval {

namespace {

struct NoteCode {
    std::uint32_t Code;
    const char* Token;
    NoteDuration Duration; // 0: refused
};

constexpr NoteCode kNoteCodes[] = {
    {0, "sbreve", 1}, {1, "minim", 2},   {2, "crotch", 4}, {3, "quav", 8}, {4, "squav", 16},
    {5, "minhd", 0},  {6, "crotchd", 0}, {30, "gn", 64},   {31, "tg", 64},
};

} // namespace

const std::vector<MovementRow>& MovementRows()
{
    // The names run beside the tokens, except at the end of the doublings, where "dbhg-b" is the
    // half doubling on High G and "hdbhg" the doubling on High A.
    static const std::vector<MovementRow> rows = {
        // Doublings
        {40, "dblg", "Low G", {0.75f, 1.5f, 0.75f}},
        {41, "dblg-b", "Low G Back Gracenote", {0.75f, 1.5f, 0.75f}},
        {42, "hdblg", "Half Doubling on Low G", {1.0f, 1.0f}},
        {43, "dbla", "Low A", {0.75f, 1.5f, 0.75f}},
        {44, "dbla-b", "Low A Back Gracenote", {0.75f, 1.5f, 0.75f}},
        {45, "hdbla", "Half Doubling on Low A", {1.0f, 1.0f}},
        {46, "dbb", "B", {0.75f, 1.5f, 0.75f}},
        {47, "dbb-b", "B Back Gracenote", {0.75f, 1.5f, 0.75f}},
        {48, "hdbb", "Half Doubling on B", {1.0f, 1.0f}},
        {49, "dbc", "C", {0.75f, 1.5f, 0.75f}},
        {50, "dbc-b", "C Back Gracenote", {0.75f, 1.5f, 0.75f}},
        {51, "hdbc", "Half Doubling on C", {1.0f, 1.0f}},
        {52, "dbd", "D", {0.75f, 1.5f, 0.75f}},
        {53, "dbd-b", "D Back Gracenote", {0.75f, 1.5f, 0.75f}},
        {54, "hdbd", "Half Doubling on D", {1.0f, 1.0f}},
        {55, "dbe", "E", {0.75f, 1.5f, 0.75f}},
        {56, "dbe-b", "E Back Gracenote", {0.75f, 1.5f, 0.75f}},
        {57, "hdbe", "Half Doubling on E", {1.0f, 1.0f}},
        {58, "dbf", "F", {0.75f, 1.5f, 0.75f}},
        {59, "dbf-b", "F Back Gracenote", {0.75f, 1.5f, 0.75f}},
        {60, "hdbf", "Half Doubling on F", {1.0f, 1.0f}},
        {61, "dbhg", "High G", {1.0f, 1.0f}},
        {62, "dbhg-b", "Half Doubling on High G", {1.0f}},
        {63, "hdbhg", "High A", {1.0f, 1.0f}},
        // Embellishments
        {80, "thrd", "Throw On D", {1.65f, 0.6f, 0.75f}},
        {81, "thrd-lg", "Throw on D from low G", {0.8f, 1.2f}},
        {82, "grp", "Leumluath", {1.0f, 1.0f, 1.0f}},
        {83, "grpd", "Leumluath on D", {1.0f, 1.0f, 1.0f}},
        {84, "tar", "Taorluath", {1.0f, 1.0f, 1.0f, 1.0f}},
        {85, "tard", "Taorluath on D", {1.0f, 1.0f, 1.0f, 1.0f}},
        {86, "gbrl", "Birl with G gracenote", {1.4f, 0.9f, 0.9f, 0.9f, 0.9f}},
        {87, "brl1", "Birl", {1.24f, 0.92f, 0.92f, 0.92f}},
        {88, "brl2", "Birl (2)", {1.2f, 0.9f, 0.9f}},
        {89, "cbrl", "Birl from C", {1.24f, 0.92f, 0.92f, 0.92f}},
        {90, "tdown", "Touch down", {1.24f, 0.76f}},
        {91, "bub-lg", "Bubbly note on low G", {1.0f, 1.0f, 1.0f, 1.0f, 1.0f}},
        {92, "bub-ng", "Bubbly note without G gracenote", {1.0f, 1.0f, 1.0f, 1.0f}},
        {93, "cbub", "Bubbly note on C", {1.0f, 1.0f, 1.0f, 1.0f, 1.0f}},
        {94, "estrk", "E Strike", {1.0f, 1.0f, 1.0f}},
        {95, "dstrk", "D Strike", {1.0f, 1.0f, 1.0f}},
        {96, "dshk", "Shake on D", {1.2f, 0.9f, 0.9f}},
        {97, "dshk-b", "Shake on D, back gracenote", {1.2f, 0.9f, 0.9f}},
        {98, "bshk", "Shake on B", {1.2f, 0.9f, 0.9f}},
        {99, "bshk-ng", "Shake on B without G gracenote", {1.0f, 1.0f}},
        {100, "dshke", "Shake on D with E gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {101, "cshke", "Shake on C with E gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {102, "bshke", "Shake on B with E gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {103, "flat", nullptr, {}},
        {104, "dstrk-bg", "D Strike, back gracenote", {1.2f, 0.9f, 0.9f}},
        {105, "dshk-ng", "Shake on D without gracenote", {1.24f, 0.76f}},
        {106, "cshk", "Shake on C", {1.2f, 0.9f, 0.9f}},
        {107, "cshk-bg", "Shake on C, back gracenote", {1.2f, 0.9f, 0.9f}},
        {108, "cshk-ng", "Shake on C without gracenote", {1.0f, 1.0f}},
        {109, "bshk-bg", "Shake on B, back gracenote", {1.2f, 0.9f, 0.9f}},
        {110, "eshkf", "Shake on E with F gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {111, "eshk-fbg", "Shake on E with F, back gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {112, "eshk-ng", "Shake on E without gracenote", {1.0f, 1.0f, 1.0f, 1.0f}},
        {113, "dstrke", "D Strike with E gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {114, "dstrk-ebg", "D Strike with back gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {115, "dshk-ebg", "Shake on D with E, back gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {116, "cshk-ebg", "Shake on C with E, back gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {117, "bshk-ebg", "Shake on B with E, back gracenote", {1.2f, 0.95f, 0.95f, 0.95f, 0.95f}},
        {118, "bshk-ng", "Shake on B without gracenote", {1.12f, 0.96f, 0.96f, 0.96f}},
        {119, "dshke-ng", "Shake on D with E, without gracenote", {1.12f, 0.96f, 0.96f, 0.96f}},
        {120, "cshke-ng", "Shake on C with E without gracenote", {1.12f, 0.96f, 0.96f, 0.96f}},
        // Piobaireachd
        {130, "pg1", nullptr, {}},
        {131, "pg2", nullptr, {}},
        {132, "pg3", nullptr, {}},
        {133, "pc1", "Cadence", {0.4f, 1.6f}},
        {134, "pc2", "Cadence (1)", {0.4f, 1.6f}},
        {135, "pc3", "Cadence (2)", {0.45f, 2.1f, 0.45f}},
        {136, "pc4", "Cadence (3)", {2.1f, 0.45f, 0.45f}},
        {137, "pthrd1", "Throw on D", {2.1f, 0.45f, 0.45f}},
        {138, "pemb", "Embari", {1.0f, 1.0f, 1.0f, 1.0f}},
        {139, "pend", "Endari/Dre/Edri", {1.0f, 1.0f, 1.0f, 1.0f}},
        {140, "pdare", "Dare/Vedare", {1.0f, 1.0f, 1.0f, 1.0f}},
        {141, "pched", "Chedari", {1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f}},
        {142, "padeda", "Adeda", {1.0f, 1.0f, 1.0f}},
        {143, "pdreo", "Dreo", {1.0f, 1.0f, 1.0f}},
        {144, "pharod", "Harodin", {1.0f, 1.0f, 1.0f}},
        {145, "pdaro", "Darodo", {1.0f, 1.0f, 1.0f, 1.0f}},
        {146, "pgrpc", "Grip with C gracenote", {1.0f, 1.0f, 1.0f, 1.0f}},
        {147, "pgrpb", "Grip with B gracenote", {1.0f, 1.0f, 1.0f, 1.0f}},
        {148, "phihar", "Hiharin", {1.4f, 0.9f, 0.9f, 0.9f}},
        {149, "ptarlg", "Taorluath on low G", {1.0f, 1.0f, 1.0f}},
        {150, "ptarla", "Taorluath on low A", {1.0f, 1.0f, 1.0f}},
        {151, "pcrun", "Crunluath", {0.91f, 1.54f, 0.91f, 0.91f, 0.91f, 0.91f, 0.91f}},
        {152, "pcrunslg", "Crunluath staying on low G", {0.91f, 1.54f, 0.91f, 0.91f, 0.91f, 0.91f, 0.91f}},
        {153, "pcrund", "Crunluath on D", {0.91f, 1.54f, 0.91f, 0.91f, 0.91f, 0.91f, 0.91f}},
        {154, "pcrunflg", "Crunluath from low G", {1.8f, 0.84f, 0.84f, 0.84f, 0.84f, 0.84f}},
        {155,
         "pcrunslg2",
         "Crunluath staying on low G, without G",
         {0.84f, 0.84f, 0.84f, 0.84f, 0.84f, 0.84f}},
        {156, "pcrunb", "Crunluath on B", {0.9f, 1.4f, 0.9f, 0.9f, 0.9f}},
        {157, "pmachb", "A' Mach on B", {1.0f, 1.0f, 1.0f, 1.0f}},
        {158, "pcrunc", "Crunluath on C", {0.9f, 1.4f, 0.9f, 0.9f, 0.9f}},
        {159, "pmachc", "A' Mach on C", {1.0f, 1.0f, 1.0f, 1.0f}},
        {160, "pmachd", "A' Mach on D", {1.0f, 1.0f, 1.0f, 1.0f}},
        {161, "pmove1", "Movement 1", {1.36f, 0.88f, 0.88f, 0.88f}},
        {162, "pmove2", "Movement 2", {1.4f, 0.9f, 0.9f, 0.9f, 0.9f}},
        {163, "pmove3", "Movement 3", {1.4f, 0.9f, 0.9f, 0.9f, 0.9f}},
        {164, "pmove4", "Movement 4", {1.44f, 0.78f, 0.78f}},
        {165, "pmove5", "Movement 5", {1.44f, 0.78f, 0.78f}},
        {166, "prest", nullptr, {}},
        {167, "pabbr1", nullptr, {}},
        {168, "pabbr2", nullptr, {}},
        {169, "pgrpabb", nullptr, {}},
        {170, "pgrpdabb", nullptr, {}},
        {171, "ptarabb", nullptr, {}},
        {172, "ptardabb", nullptr, {}},
        {173, "pcrunabbr", nullptr, {}},
        {174, "pcrundabb", nullptr, {}},
        {175, "pmachabb", nullptr, {}},
        {176, "pthrd2", nullptr, {}},
    };
    return rows;
}

QString MovementCategory(std::uint32_t code)
{
    if (code < 80)
        return QString::fromLatin1(MovementPalettes[1]);
    return QString::fromLatin1(code < 130 ? MovementPalettes[2] : MovementPalettes[3]);
}

CodeInfo LookUpCode(std::uint32_t code)
{
    const auto note = std::find_if(std::begin(kNoteCodes), std::end(kNoteCodes),
                                   [code](const NoteCode& n) { return n.Code == code; });
    if (note != std::end(kNoteCodes)) {
        const CodeKind kind = note->Duration != 0 ? CodeKind::Note : CodeKind::Refused;
        return {kind, QString::fromLatin1(note->Token), note->Duration, {}};
    }
    const auto& rows = MovementRows();
    const auto row =
        std::find_if(rows.begin(), rows.end(), [code](const MovementRow& r) { return r.Code == code; });
    if (row == rows.end())
        return {CodeKind::Unknown, QStringLiteral("??"), 0, {}};
    if (row->Name == nullptr)
        return {CodeKind::Refused, QString::fromLatin1(row->Token), 0, {}};
    return {CodeKind::Movement, QString::fromLatin1(row->Token), 0, QString::fromLatin1(row->Name)};
}

const std::vector<float>* MovementWeights(const QString& name)
{
    const auto& rows = MovementRows();
    const auto row = std::find_if(rows.begin(), rows.end(), [&name](const MovementRow& r) {
        return r.Name != nullptr && name == QLatin1String(r.Name);
    });
    return row != rows.end() ? &row->Weights : nullptr;
}

} // namespace corrieval
