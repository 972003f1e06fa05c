#include "formats/bww/BwwSymbols.h"

#include <utility>

namespace corrieval::bww {

namespace {

// "hgrpb" and "hgrpc" stand twice on purpose: the later values are the ones in force. The
// misspelled "heplb" and "ggrbp" are what the files hold, and "strc", "stre", "strf" and "strhg"
// are known words without a movement. The entries from "'lg" on are reached by the scanner's own
// rules, not by the word path.
constexpr std::pair<std::string_view, std::int32_t> kKeywords[] = {
    {"strlg", 90},  {"strb", 98},   {"strc", -1},    {"strd", 95},   {"stre", -1},   {"strf", -1},
    {"strhg", -1},  {"strha", 31},  {"dblg", 40},    {"tdblg", 41},  {"hdblg", 42},  {"dbla", 43},
    {"tdbla", 44},  {"hdbla", 45},  {"dbb", 46},     {"tdbb", 47},   {"hdbb", 48},   {"dbc", 49},
    {"tdbc", 50},   {"hdbc", 51},   {"dbd", 52},     {"tdbd", 53},   {"hdbd", 54},   {"dbe", 55},
    {"tdbe", 56},   {"hdbe", 57},   {"dbf", 58},     {"tdbf", 59},   {"hdbf", 60},   {"dbhg", 61},
    {"dbha", 63},   {"thrd", 80},   {"thr", 80},     {"lhstd", 81},  {"lstd", 81},   {"tar", 84},
    {"tarb", 85},   {"tad", 85},    {"grp", 83},     {"grpb", 82},   {"hgrpb", 82},  {"hgrpc", 82},
    {"bub", 82},    {"gbr", 86},    {"abr", 87},     {"brl", 88},    {"bubly", 91},  {"hub", 91},
    {"hbubly", 92}, {"lhub", 92},   {"lgstd", 95},   {"ltstd", 104}, {"gstd", 96},   {"tstd", 97},
    {"hstd", 105},  {"std", 105},   {"gstc", 106},   {"tstc", 107},  {"hstc", 108},  {"stc", 108},
    {"gstb", 98},   {"tstb", 109},  {"hstb", 99},    {"stb", 99},    {"pele", 110},  {"tpele", 111},
    {"hpele", 112}, {"lpeld", 113}, {"ltpeld", 114}, {"peld", 100},  {"tpeld", 115}, {"hpeld", 105},
    {"pelc", 101},  {"tpelc", 116}, {"hpelc", 108},  {"pelb", 102},  {"tpelb", 117}, {"heplb", 118},
    {"hgrpb", 147}, {"bgrp", 147},  {"hgrpc", 146},  {"cgrp", 146},  {"ggrbp", 157}, {"gbgrp", 157},
    {"ggrpc", 158}, {"gcgrp", 158}, {"tgrpb", 162},  {"tbgrp", 162}, {"tgrpc", 163}, {"tcgrp", 163},
    {"dbstf", 164}, {"dstf", 164},  {"dbsthg", 165}, {"dsthg", 165}, {"LG_", 279},   {"LGr_", 280},
    {"LGl_", 281},  {"LA_", 282},   {"LAr_", 283},   {"LAl_", 284},  {"B_", 285},    {"Br_", 286},
    {"Bl_", 287},   {"C_", 288},    {"Cr_", 289},    {"Cl_", 290},   {"D_", 291},    {"Dr_", 292},
    {"Dl_", 293},   {"E_", 294},    {"Er_", 295},    {"El_", 296},   {"F_", 297},    {"Fr_", 298},
    {"Fl_", 299},   {"HG_", 300},   {"HGr_", 301},   {"HGl_", 302},  {"HA_", 303},   {"HAr_", 304},
    {"HAl_", 305},  {"gg", 309},    {"dg", 310},     {"eg", 311},    {"tg", 312},    {"'lg", 315},
    {"'la", 316},   {"'b", 317},    {"'c", 318},     {"'d", 319},    {"'e", 320},    {"'f", 321},
    {"'hg", 322},   {"'ha", 323},   {"I!", 324},     {"I!''", 325},  {"!I", 326},    {"''!I", 327},
    {"!t", 328},    {"^tl", 330},   {"^3", 331},     {"2_2", 332},   {"3_2", 333},   {"2_4", 334},
    {"3_4", 335},   {"4_4", 336},   {"5_4", 337},    {"6_4", 338},   {"7_4", 339},   {"6_8", 340},
    {"9_8", 341},   {"12_8", 342},  {"_'", 347},
};

} // namespace

SymbolTable::SymbolTable() : m_entries(1)
{
    for (const auto& [name, code] : kKeywords)
        Insert(name, code);
}

std::string_view SymbolTable::Insert(std::string_view name, std::int32_t code)
{
    std::string_view problem;
    if (m_entries.size() >= MaxEntries)
        problem = "symbol table full";
    else if (m_lexemeBytes + name.size() + 1 >= MaxLexemeBytes)
        problem = "lexemes array full";
    else {
        m_entries.push_back({std::string(name), code});
        m_lexemeBytes += name.size() + 1;
    }
    return problem;
}

std::size_t SymbolTable::Lookup(std::string_view name) const
{
    for (std::size_t i = m_entries.size() - 1; i > 0; --i) {
        if (m_entries[i].Name == name)
            return i;
    }
    return 0;
}

} // namespace corrieval::bww
