#include "package_check.h"

#include "zip/archive.h"

#include <pugixml.hpp>

#include <algorithm>
#include <deque>
#include <iterator>
#include <set>
#include <sstream>
#include <vector>

namespace pluvo::docx {

namespace {

using pugi::xml_node;
using Names = std::vector<std::string>;

/// What there must not be, by XPath over the story. Prefixes are gone but those of markup that is not Word's.
const std::pair<const char*, const char*> kForbidden[] = {
    {"a paragraph out of place", "//p/p | //r/p | //tbl/p | //tr/p | //hyperlink/p"},
    {"a run out of place", "//r/r | //body/r | //tc/r | //tbl/r | //tr/r | //pPr/r | //t/r"},
    {"a cell out of place", "//tbl/tc | //body/tc | //p/tc | //r/tc | //tc/tc"},
    {"a row out of place", "//body/tr | //p/tr | //r/tr | //tr/tr | //tc/tr"},
    {"a table out of place", "//p/tbl | //r/tbl | //tbl/tbl | //tr/tbl"},
    {"a break out of place", "//p/br | //body/br | //hyperlink/br"},
    {"a cell without paragraph", "//tc[count(.//p) = count(.//tbl//p)]"},
    {"a row without cell", "//tr[not(.//tc)]"},
    {"a table without row", "//tbl[not(.//tr)]"},
    {"an empty content control", "//sdtContent[not(*)]"},
    {"a control for plain text with several paragraphs",
     "//sdt[sdtPr[text or date or comboBox or dropDownList]][count(sdtContent//p) > 1]"},
    {"a line break in a control of one line",
     "//sdt[sdtPr/text[not(@multiLine = '1' or @multiLine = 'true' or @multiLine = 'on')]]"
     "/sdtContent//br[not(@type)]"},
    {"a placeholder's look in a control that shows none",
     "//sdt[sdtPr[not(showingPlcHdr)]]/sdtContent//rStyle[@val = 'PlaceholderText']"
     "[not(ancestor::sdt[1]/sdtPr/showingPlcHdr)]"},
    {"an empty wrapper", "//p/hyperlink[not(*)] | //p/ins[not(*)]"},
    {"properties that are not first",
     "(//p/pPr | //r/rPr | //tc/tcPr | //tbl/tblPr)"
     "[preceding-sibling::*[1][not(starts-with(name(), 'bookmark'))]]"},
    {"text outside a run", "(//t | //delText | //instrText | //delInstrText)[not(parent::r)]"},
    {"blanks not preserved",
     "(//t | //delText | //instrText | //delInstrText)[not(@space = 'preserve')]"
     "[starts-with(., ' ') or substring(., string-length(.)) = ' ']"},
    {"plain text in a tracked deletion", "//del[not(parent::rPr or parent::trPr)]//t"},
    {"deleted text outside a deletion", "//delText[not(ancestor::del)]"},
    {"a story without paragraph",
     "(/hdr | /ftr | /txbxContent | //footnote | //endnote | //comment)[not(.//p)]"}};

const std::pair<const char*, const char*> kUnique[] = {
    {"id given twice: paragraph", "//p/@paraId"},
    {"id given twice: tracked change", "(//ins | //del | //moveFrom | //moveTo)/@id"},
    {"id given twice: control", "//sdtPr/id/@val"}};

Names namesIn(const std::string& list) {
  std::istringstream words(list);
  return {std::istream_iterator<std::string>(words), {}};
}

const Names kRunProperties = namesIn(
    "ins del moveFrom moveTo rStyle rFonts b bCs i iCs caps smallCaps strike dstrike outline shadow emboss "
    "imprint noProof snapToGrid vanish webHidden color spacing w kern position sz szCs highlight u effect "
    "bdr shd fitText vertAlign rtl cs em lang eastAsianLayout specVanish oMath rPrChange");
const Names kParagraphTail = {"rPr", "sectPr", "pPrChange"};

struct Control {
  std::string text;
  std::string values;  ///< what it says of its text
};
using Controls = std::map<std::string, Control>;

std::string localOf(const std::string& name) { return name.substr(name.find(':') + 1); }

/// Takes prefixes off, and away what stands in markup that is looked at from outside only.
void simplify(xml_node node) {
  static const std::set<std::string> kClosed = {"txbxContent", "drawing", "pict", "object"};
  for (pugi::xml_attribute attribute : node.attributes())
    attribute.set_name(localOf(attribute.name()).c_str());
  for (xml_node child : node.children()) {
    const std::string local = localOf(child.name());
    const bool isOurs = local == child.name() || std::string(child.name()).starts_with("w:") ||
                        local == "AlternateContent" || local == "Choice" || local == "Fallback";
    simplify(child);
    if (isOurs) child.set_name(local.c_str());
    const bool notChosen = local == "Fallback" && child.previous_sibling();
    if (!isOurs || notChosen || kClosed.contains(local) || local.ends_with("Change")) child.remove_children();
  }
}

class Checker {
 public:
  explicit Checker(const base::Bytes& document) : archive_(zip::Archive::open(document)) {}

  Controls controls() {
    Controls all;
    const pugi::xml_document story = parsed("word/document.xml");
    for (const auto& found : story.select_nodes("//sdt[sdtPr/id]")) {
      Control control;
      for (const auto& text : inOrder(found.node(), "sdtContent//t | sdtContent//delText"))
        control.text += text.node().text().get();
      for (const auto& value : found.node().select_nodes(
               "sdtPr/dataBinding | sdtPr/showingPlcHdr | sdtPr/*[@fullDate or @lastValue]"))
        control.values += std::string(value.node().name()) + " ";
      all[found.node().select_node("sdtPr/id/@val").attribute().value()] = control;
    }
    return all;
  }

  Faults check() {
    for (const zip::Member& member : archive_.members()) {
      if (!member.name.ends_with(".xml") || !member.name.starts_with("word/")) continue;
      const pugi::xml_document story = parsed(std::string(member.name));
      if (story.select_node("/document")) checkReferences(story, std::string(member.name));
      if (story.select_node("/document | /hdr | /ftr | /footnotes | /endnotes | /comments"))
        checkStory(story);
    }
    for (std::size_t i = 0; i < boxes_.size(); ++i) checkStory(boxes_[i]);
    return faults_;
  }

 private:
  void fault(const std::string& what) { ++faults_[what]; }

  pugi::xml_document parsed(const std::string& name) {
    pugi::xml_document part;
    const zip::Member* const member = archive_.find(name);
    if (member == nullptr) return part;
    const base::Bytes bytes = archive_.read(*member);
    if (!part.load_buffer(bytes.view.data(), bytes.view.size(), pugi::parse_default | pugi::parse_ws_pcdata))
      fault("not well-formed: " + name);
    part.document_element().set_name(localOf(part.document_element().name()).c_str());
    takeBoxes(part.document_element());
    simplify(part.document_element());
    return part;
  }

  /// What stands in drawings is checked by itself.
  void takeBoxes(xml_node node) {
    for (xml_node child : node.children()) {
      takeBoxes(child);
      if (localOf(child.name()) != "txbxContent") continue;
      xml_node box = boxes_.emplace_back().append_copy(child);
      box.set_name("txbxContent");
      for (xml_node block : box.children()) {
        simplify(block);
        block.set_name(localOf(block.name()).c_str());
      }
      child.remove_children();
    }
  }

  static pugi::xpath_node_set inOrder(const xml_node& part, const std::string& wanted) {
    pugi::xpath_node_set found = part.select_nodes(wanted.c_str());
    found.sort();
    return found;
  }

  static Names valuesOf(const xml_node& part, const std::string& attributes) {
    Names values;
    for (const pugi::xpath_node& found : part.select_nodes(attributes.c_str()))
      values.emplace_back(found.attribute().value());
    return values;
  }

  void checkStory(const xml_node& story) {
    for (const auto& [what, where] : kForbidden) {
      for (std::size_t i = story.select_nodes(where).size(); i > 0; --i) fault(what);
    }
    for (const auto& [what, where] : kUnique) {
      std::set<std::string> seen;
      for (const std::string& value : valuesOf(story, where)) {
        if (!value.empty() && !seen.insert(value).second) fault(what);
      }
    }
    for (const auto& found : story.select_nodes("//rPr")) checkOrder(found.node(), kRunProperties, false);
    for (const auto& found : story.select_nodes("//pPr")) checkOrder(found.node(), kParagraphTail, true);
    checkFields(story);
    for (const char* kind : {"bookmark", "commentRange", "perm", "moveFromRange", "moveToRange"})
      checkMarkers(story, kind);
  }

  void checkOrder(const xml_node& node, const Names& order, bool tailOnly) {
    std::size_t reached = 0;
    std::set<std::string> seen;
    for (const xml_node child : node.children()) {
      const std::string name = child.name();
      if (name.empty()) continue;  // blanks
      const auto place = static_cast<std::size_t>(std::ranges::find(order, name) - order.begin());
      if (place == order.size()) {
        if (tailOnly && reached > 0) fault(name + " after the end of " + node.name());
        continue;
      }
      if (place + 1 < reached) fault(name + " too late in " + node.name());
      if (!seen.insert(name).second) fault(name + " twice in " + node.name());
      reached = std::max(reached, place + 1);
    }
  }

  void checkFields(const xml_node& story) {
    int depth = 0;
    for (const auto& found : inOrder(story, "//fldChar | //instrText")) {
      const std::string type = found.node().attribute("fldCharType").value();
      if (type == "begin") ++depth;
      if (type == "end" && --depth < 0) fault("an end without a field");
      if (type.empty() && depth <= 0) fault("a field code outside a field");
      depth = std::max(depth, 0);
    }
    if (depth != 0) fault("a field without an end");
  }

  void checkMarkers(const xml_node& story, const std::string& kind) {
    std::map<std::string, int> open;
    for (const auto& found : inOrder(story, "//" + kind + "Start | //" + kind + "End")) {
      int& count = open[found.node().attribute("id").value()];
      count += std::string(found.node().name()).ends_with("Start") ? 1 : -1;
      if (count > 1) fault("id given twice: " + kind);
      if (count < 0) fault("an end before its start: " + kind);
    }
    for (const auto& [id, count] : open) {
      if (count != 0) fault("marker out of balance: " + kind);
    }
  }

  /// Those that have no counterpart.
  void checkLead(const std::string& what, const Names& from, const Names& to) {
    for (const std::string& id : from) {
      if (!id.empty() && std::ranges::find(to, id) == to.end()) fault(what);
    }
  }

  void checkReferences(const xml_node& story, const std::string& name) {
    const std::string folder = name.substr(0, name.rfind('/') + 1);
    for (const std::string kind : {"footnote", "endnote", "comment"}) {
      if (archive_.find(folder + kind + "s.xml") == nullptr) continue;
      const Names present = valuesOf(parsed(folder + kind + "s.xml"), "//" + kind + "[not(@type)]/@id");
      const Names references = valuesOf(story, "//" + kind + "Reference/@id");
      checkLead("a reference without " + kind, references, present);
      checkLead("a " + kind + " without reference", present, references);
    }
    checkLead(
        "a link without relationship", valuesOf(story, "//hyperlink/@id"),
        valuesOf(parsed(folder + "_rels/" + name.substr(folder.size()) + ".rels"), "//Relationship/@Id"));
    const pugi::xml_document extended = parsed(folder + "commentsExtended.xml");
    const Names paragraphs = valuesOf(parsed(folder + "comments.xml"), "//p/@paraId");
    checkLead("an extension without comment", valuesOf(extended, "//@paraId"), paragraphs);
    checkLead("an extension of no comment's last paragraph", valuesOf(extended, "//@paraId"),
              valuesOf(parsed(folder + "comments.xml"), "//comment/p[last()]/@paraId"));
    checkLead("a reply without comment", valuesOf(extended, "//@paraIdParent"), paragraphs);
  }

  zip::Archive archive_;
  Faults faults_;
  std::deque<pugi::xml_document> boxes_;
};

}  // namespace

Faults faultsOf(const base::Bytes& document) { return Checker(document).check(); }

std::string valuesDenied(const base::Bytes& before, const base::Bytes& after) {
  const Controls old = Checker(before).controls();
  std::string out;
  for (const auto& [id, control] : Checker(after).controls()) {
    const auto was = old.find(id);
    if (was != old.end() && was->second.text != control.text && !control.values.empty())
      out += id + " keeps " + control.values + "; ";
  }
  return out;
}

std::string worsened(const Faults& before, const Faults& after) {
  std::string out;
  for (const auto& [what, count] : after) {
    if (!before.contains(what)) out += what + " (" + std::to_string(count) + "); ";
  }
  return out;
}

}  // namespace pluvo::docx
