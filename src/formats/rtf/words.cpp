#include "words.h"

#include <array>
#include <cstddef>

namespace pluvo::rtf {

namespace {

struct KnownWord {
  std::string_view text;
  Meaning meaning;
};

constexpr KnownWord kWords[] = {
    {"par", {Word::par}},
    {"cell", {Word::cell}},
    {"nestcell", {Word::nestcell}},
    {"row", {Word::row}},
    {"nestrow", {Word::nestrow}},
    {"sect", {Word::sect}},
    {"lbr", {Word::lbr}},
    {"u", {Word::u}},
    {"chftn", {Word::chftn}},
    {"page", {Word::character, 12}},
    {"column", {Word::character, 14}},
    {"line", {Word::character, 11}},
    {"tab", {Word::character, 9}},
    {"emdash", {Word::character, 0x2014}},
    {"endash", {Word::character, 0x2013}},
    {"bullet", {Word::character, 0x2022}},
    {"lquote", {Word::character, 0x2018}},
    {"rquote", {Word::character, 0x2019}},
    {"ldblquote", {Word::character, 0x201C}},
    {"rdblquote", {Word::character, 0x201D}},
    {"emspace", {Word::character, 0x2003}},
    {"enspace", {Word::character, 0x2002}},
    {"qmspace", {Word::character, 0x2005}},
    {"ltrmark", {Word::character, 0x200E}},
    {"rtlmark", {Word::character, 0x200F}},
    {"zwj", {Word::character, 0x200D}},
    {"zwnj", {Word::character, 0x200C}},
    {"zwbo", {Word::character, 0x200B}},
    {"zwnbo", {Word::character, 0x2060}},
    {"field", {Word::field}},
    {"fldinst", {Word::fldinst}},
    {"fldrslt", {Word::fldrslt}},
    {"fldlock", {Word::fieldFlag}},
    {"fldedit", {Word::fieldFlag}},
    {"flddirty", {Word::fieldFlag}},
    {"fldpriv", {Word::fieldFlag}},
    {"upr", {Word::upr}},
    {"ud", {Word::ud}},
    {"nesttableprops", {Word::nesttableprops}},
    {"pict", {Word::pict}},
    {"shppict", {Word::shppict}},
    {"object", {Word::object}},
    {"mmath", {Word::mmath}},
    {"shp", {Word::shp}},
    {"shpgrp", {Word::shp}},
    {"do", {Word::shp}},
    {"footnote", {Word::footnote}},
    {"annotation", {Word::annotation}},
    {"fonttbl", {Word::fonttbl}},
    {"colortbl", {Word::colortbl}},
    {"stylesheet", {Word::stylesheet}},
    {"info", {Word::info}},
    {"header", {Word::header}},
    {"headerl", {Word::headerLeft}},
    {"headerr", {Word::header}},
    {"headerf", {Word::headerFirst}},
    {"footer", {Word::footer}},
    {"footerl", {Word::footerLeft}},
    {"footerr", {Word::footer}},
    {"footerf", {Word::footerFirst}},
    {"atnid", {Word::atnid}},
    {"atnauthor", {Word::atnauthor}},
    {"atrfstart", {Word::atrfstart}},
    {"atrfend", {Word::atrfend}},
    {"listtext", {Word::label}},
    {"pntext", {Word::label}},
    {"nonesttables", {Word::nonesttables}},
    {"nonshppict", {Word::nonshppict}},
    {"passwordhash", {Word::passwordhash}},
    {"docvar", {Word::docvar}},
    {"filetbl", {Word::skipped}},
    {"list", {Word::skipped}},
    {"listlevel", {Word::skipped}},
    {"leveltext", {Word::skipped}},
    {"levelnumbers", {Word::skipped}},
    {"listname", {Word::skipped}},
    {"liststylename", {Word::skipped}},
    {"listoverride", {Word::skipped}},
    {"lfolevel", {Word::skipped}},
    {"listtable", {Word::skipped}},
    {"listoverridetable", {Word::skipped}},
    {"pn", {Word::skipped}},
    {"pntxta", {Word::skipped}},
    {"pntxtb", {Word::skipped}},
    {"revtbl", {Word::revtbl}},
    {"rsidtbl", {Word::skipped}},
    {"ftnsep", {Word::skipped}},
    {"ftnsepc", {Word::skipped}},
    {"ftncn", {Word::skipped}},
    {"aftnsep", {Word::skipped}},
    {"aftnsepc", {Word::skipped}},
    {"aftncn", {Word::skipped}},
    {"bkmkstart", {Word::bkmkstart}},
    {"bkmkend", {Word::bkmkend}},
    {"atntime", {Word::skipped}},
    {"atndate", {Word::skipped}},
    {"atnparent", {Word::skipped}},
    {"pnseclvl", {Word::skipped}},
    {"wgrffmtfilter", {Word::skipped}},
    {"defchp", {Word::skipped}},
    {"defpap", {Word::skipped}},
    {"blipuid", {Word::skipped}},
    {"svb", {Word::skipped}},
    {"fchars", {Word::skipped}},
    {"lchars", {Word::skipped}},
    {"protusertbl", {Word::skipped}},
    {"oldcprops", {Word::skipped}},
    {"atnicn", {Word::skipped}},
    {"xe", {Word::indexEntry}},
    {"tc", {Word::indexEntry}},
    {"tcn", {Word::indexEntry}},
    {"rxe", {Word::indexEntry}},
    {"txe", {Word::indexEntry}},
    {"formfield", {Word::formfield}},
    {"datafield", {Word::skipped}},
    {"private", {Word::skipped}},
    {"template", {Word::skipped}},
    {"pgptbl", {Word::skipped}},
    {"background", {Word::skipped}},
    {"userprops", {Word::userprops}},
    {"generator", {Word::skipped}},
    {"themedata", {Word::skipped}},
    {"colorschememapping", {Word::skipped}},
    {"latentstyles", {Word::skipped}},
    {"datastore", {Word::skipped}},
    {"xmlnstbl", {Word::skipped}},
    {"mmathPr", {Word::skipped}},
    {"fname", {Word::skipped}},
    {"falt", {Word::skipped}},
    {"panose", {Word::skipped}},
    {"objclass", {Word::skipped}},
    {"objdata", {Word::skipped}},
    {"objname", {Word::skipped}},
    {"shpinst", {Word::skipped}},
    {"shprslt", {Word::shprslt}},
    {"mr", {Word::mr}},
    {"picprop", {Word::skipped}},
    {"sp", {Word::skipped}},
    {"sn", {Word::sn}},
    {"sv", {Word::sv}},
    {"htmltag", {Word::skipped}},
    {"mhtmltag", {Word::skipped}},
    {"writereservhash", {Word::writereservhash}},
    {"writereservation", {Word::writereservation}},
    {"f", {Word::f}},
    {"plain", {Word::plain}},
    {"v", {Word::v}},
    {"deleted", {Word::deleted}},
    {"revised", {Word::revised}},
    {"highlight", {Word::highlight}},
    {"b", {Word::b}},
    {"i", {Word::i}},
    {"strike", {Word::strike}},
    {"striked", {Word::strike}},
    {"ul", {Word::ul}},
    {"uld", {Word::ul}},
    {"uldb", {Word::ul}},
    {"uldash", {Word::ul}},
    {"uldashd", {Word::ul}},
    {"uldashdd", {Word::ul}},
    {"ulth", {Word::ul}},
    {"ulw", {Word::ul}},
    {"ulwave", {Word::ul}},
    {"ulhwave", {Word::ul}},
    {"ulnone", {Word::ulnone}},
    {"rtlch", {Word::rtlch}},
    {"ltrch", {Word::ltrch}},
    {"uc", {Word::uc}},
    {"pard", {Word::pard}},
    {"intbl", {Word::intbl}},
    {"itap", {Word::itap}},
    {"ql", {Word::ql}},
    {"qc", {Word::qc}},
    {"qr", {Word::qr}},
    {"qj", {Word::qj}},
    {"rtlpar", {Word::rtlpar}},
    {"ltrpar", {Word::ltrpar}},
    {"outlinelevel", {Word::outlinelevel}},
    {"s", {Word::s}},
    {"ls", {Word::ls}},
    {"ilvl", {Word::ilvl}},
    {"trowd", {Word::trowd}},
    {"cellx", {Word::cellx}},
    {"trleft", {Word::trleft}},
    {"rtf", {Word::rtf}},
    {"ansi", {Word::ansi}},
    {"mac", {Word::mac}},
    {"pc", {Word::pc}},
    {"pca", {Word::pca}},
    {"ansicpg", {Word::ansicpg}},
    {"deff", {Word::deff}},
    {"formprot", {Word::formprot}},
    {"revprot", {Word::revprot}},
    {"annotprot", {Word::annotprot}},
    {"readprot", {Word::readprot}},
    {"readonlyrecommended", {Word::readonlyrecommended}},
    {"enforceprot", {Word::enforceprot}},
    {"fcharset", {Word::fcharset}},
    {"cpg", {Word::cpg}},
    {"red", {Word::red}},
    {"green", {Word::green}},
    {"blue", {Word::blue}},
    {"password", {Word::password}},
    {"atnref", {Word::atnref}},
    {"ftnalt", {Word::ftnalt}},
    {"shptxt", {Word::shptxt}},
    {"dptxbxtext", {Word::shptxt}},
    {"pnlvl", {Word::pnlvl}},
    {"pnlvlbody", {Word::pnlvl}},
    {"pnlvlblt", {Word::pnlvl}},
    {"chatn", {Word::chatn}},
    {"bin", {Word::bin}},
};

/// Places by hash of the first eight letters, the next free one where that is taken.
class Places {
 public:
  constexpr Places() {
    for (std::size_t i = 0; i < std::size(kWords); ++i) {
      std::size_t place = placeOf(headOf(kWords[i].text));
      while (entries_[place].word != 0) place = (place + 1) % kCount;
      entries_[place] = {headOf(kWords[i].text), static_cast<std::uint16_t>(i + 1),
                         static_cast<std::uint16_t>(kWords[i].text.size()), kWords[i].meaning};
    }
  }

  constexpr Meaning find(std::string_view text, std::uint64_t head) const {
    for (std::size_t place = placeOf(head); entries_[place].word != 0; place = (place + 1) % kCount) {
      const Entry& entry = entries_[place];
      if (entry.head != head || entry.letters != text.size()) continue;
      if (text.size() <= kHead || text == kWords[entry.word - 1].text) return entry.meaning;
    }
    return {};
  }

 private:
  static constexpr unsigned kBits = 11;
  static constexpr std::size_t kCount = std::size_t{1} << kBits;
  static constexpr std::size_t placeOf(std::uint64_t head) {
    return static_cast<std::size_t>(head * 0x9E3779B97F4A7C15U >> (64U - kBits));
  }

  struct Entry {
    std::uint64_t head = 0;
    std::uint16_t word = 0;  ///< its number, from 1
    std::uint16_t letters = 0;
    Meaning meaning;
  };
  std::array<Entry, kCount> entries_ = {};
};

constexpr Places kPlaces;

}  // namespace

Meaning meaningOf(std::string_view word, std::uint64_t head) { return kPlaces.find(word, head); }

}  // namespace pluvo::rtf
