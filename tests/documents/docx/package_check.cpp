#include "package_check.h"

#include "archive/archive.h"
#include "xml/encoding.h"
#include "xml/scanner.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <sstream>
#include <vector>

namespace pluvo::docx {

namespace {

struct Node {
  std::string name;  ///< without prefix
  std::string prefix;
  std::map<std::string, std::string> attributes;  ///< without prefixes
  std::vector<std::unique_ptr<Node>> children;
  std::string text;

  std::string value(const std::string& attribute) const {
    const auto found = attributes.find(attribute);
    return found == attributes.end() ? "" : found->second;
  }
};

std::string localOf(std::string_view name) { return std::string(name.substr(name.find(':') + 1)); }

std::unique_ptr<Node> parse(const archive::Archive& archive, const archive::Member& member) {
  static const xml::Vocabulary none({}, {});
  const xml::Utf8Part part = xml::toUtf8(archive.read(member), std::string(member.name));
  xml::Scanner scanner(part.utf8.view, none, std::string(member.name));
  auto root = std::make_unique<Node>();
  std::vector<Node*> open{root.get()};
  for (xml::Token token = scanner.next(); token != xml::Token::finish; token = scanner.next()) {
    if (token == xml::Token::end) open.pop_back();
    if (token == xml::Token::text) open.back()->text += scanner.bytes(scanner.begin(), scanner.end());
    if (token == xml::Token::reference) open.back()->text += '?';
    if (token != xml::Token::start && token != xml::Token::empty) continue;
    auto node = std::make_unique<Node>();
    node->name = localOf(scanner.qualifiedName());
    node->prefix = scanner.qualifiedName().substr(0, scanner.qualifiedName().size() - node->name.size());
    for (const xml::Attribute& attribute : scanner.attributes()) {
      node->attributes[localOf(scanner.bytes(attribute.nameBegin, attribute.nameEnd))] =
          scanner.value(attribute);
    }
    open.back()->children.push_back(std::move(node));
    if (token == xml::Token::start) open.push_back(open.back()->children.back().get());
  }
  return root;
}

using Names = std::vector<std::string>;

Names namesIn(const std::string& list) {
  std::istringstream words(list);
  return {std::istream_iterator<std::string>(words), {}};
}

const Names kRunProperties = namesIn(
    "ins del moveFrom moveTo rStyle rFonts b bCs i iCs caps smallCaps strike dstrike outline shadow emboss "
    "imprint noProof snapToGrid vanish webHidden color spacing w kern position sz szCs highlight u effect "
    "bdr "
    "shd fitText vertAlign rtl cs em lang eastAsianLayout specVanish oMath rPrChange");
const Names kParagraphTail = {"rPr", "sectPr", "pPrChange"};
const std::set<std::string> kTextElements = {"t", "delText", "instrText", "delInstrText"};

class Checker {
 public:
  explicit Checker(const files::Bytes& document) : archive_(archive::Archive::open(document)) {}

  Faults check() {
    for (const archive::Member& member : archive_.members()) {
      const std::string name(member.name);
      if (!name.ends_with(".xml") && !name.ends_with(".rels")) continue;
      parts_[name] = parse(archive_, member);
    }
    for (const auto& [name, root] : parts_) {
      const bool isStory = !root->children.empty() && (root->children[0]->name == "document");
      if (isStory) checkStory(name, *root);
    }
    return faults_;
  }

 private:
  void fault(const std::string& what) { ++faults_[what]; }

  void checkStory(const std::string& name, const Node& root) {
    walk(*root.children[0], nullptr, false);
    if (fields_ != 0) fault("a field without an end");
    for (const auto& [marker, open] : markers_) {
      if (open != 0) fault("marker out of balance: " + marker.first);
    }
    checkReferences(name);
  }

  void walk(const Node& node, const Node* parent, bool inDeletion) {
    const std::string around = parent == nullptr ? "" : parent->name;
    if (node.prefix != "w:" && !node.prefix.empty() && node.name != "AlternateContent" &&
        node.name != "Choice" && node.name != "Fallback") {
      return;
    }
    if (node.name == "txbxContent" || node.name == "drawing" || node.name == "pict" || node.name == "object")
      return;
    checkPlace(node, around);
    checkOrder(node);
    checkText(node, around, inDeletion);
    checkMarkers(node);
    const bool deletion = inDeletion || (node.name == "del" && around != "rPr" && around != "trPr");
    for (const auto& child : node.children) {
      if (node.name == "AlternateContent" && child->name == "Fallback" && node.children.size() > 1) continue;
      if (child->name.ends_with("Change")) continue;
      walk(*child, &node, deletion);
    }
  }

  void checkPlace(const Node& node, const std::string& around) {
    static const std::map<std::string, std::set<std::string>> kNever = {
        {"p", {"p", "r", "tbl", "tr", "hyperlink"}},
        {"r", {"r", "body", "tc", "tbl", "tr", "pPr", "t"}},
        {"tc", {"tbl", "body", "p", "r", "tc"}},
        {"tr", {"body", "p", "r", "tr", "tc"}},
        {"tbl", {"p", "r", "tbl", "tr"}},
        {"t", {"p", "body", "hyperlink", "ins", "del"}},
        {"br", {"p", "body", "hyperlink"}}};
    const auto rule = kNever.find(node.name);
    if (rule != kNever.end() && rule->second.contains(around)) fault(node.name + " in " + around);
    const auto has = [&](const char* name) {
      std::function<bool(const Node&)> find = [&](const Node& inside) {
        return std::any_of(inside.children.begin(), inside.children.end(), [&](const auto& child) {
          const bool transparent = child->name.starts_with("sdt") || child->name == "AlternateContent" ||
                                   child->name == "Choice" || child->name == "customXml" ||
                                   child->name == "ins";
          return child->name == name || (transparent && find(*child));
        });
      };
      return find(node);
    };
    if (node.name == "tc" && !has("p")) fault("a cell without paragraph");
    if (node.name == "tr" && !has("tc")) fault("a row without cell");
    if (node.name == "tbl" && !has("tr")) fault("a table without row");
    if (node.name == "sdtContent" && node.children.empty()) fault("an empty content control");
    if ((node.name == "hyperlink" || node.name == "ins") && node.children.empty() && around == "p") {
      fault("an empty " + node.name);
    }
  }

  void checkOrder(const Node& node) {
    if (node.name == "rPr") checkSequence(node, kRunProperties, false);
    if (node.name == "pPr") checkSequence(node, kParagraphTail, true);
    for (std::size_t i = 0; i < node.children.size(); ++i) {
      const std::string& child = node.children[i]->name;
      const bool mustLead = (node.name == "p" && child == "pPr") || (node.name == "r" && child == "rPr") ||
                            (node.name == "tc" && child == "tcPr") ||
                            (node.name == "tbl" && child == "tblPr");
      if (mustLead && i != 0 && !node.children[i - 1]->name.starts_with("bookmark"))
        fault(child + " is not first");
    }
  }

  void checkSequence(const Node& node, const Names& order, bool tailOnly) {
    std::size_t reached = 0;
    std::set<std::string> seen;
    for (const auto& child : node.children) {
      if (child->prefix != node.prefix) continue;
      const auto place =
          static_cast<std::size_t>(std::find(order.begin(), order.end(), child->name) - order.begin());
      if (place == order.size()) {
        if (tailOnly && reached > 0) fault(child->name + " behind the end of " + node.name);
        continue;
      }
      if (place + 1 < reached) fault(child->name + " too late in " + node.name);
      if (!seen.insert(child->name).second) fault(child->name + " twice in " + node.name);
      reached = std::max(reached, place + 1);
    }
  }

  void checkText(const Node& node, const std::string& around, bool inDeletion) {
    if (kTextElements.contains(node.name)) {
      if (around != "r") fault(node.name + " outside a run");
      const bool edge = !node.text.empty() && (node.text.front() == ' ' || node.text.back() == ' ');
      if (edge && node.value("space") != "preserve") fault("blanks not preserved");
      if (node.name == "t" && inDeletion) fault("plain text in a tracked deletion");
      if (node.name == "delText" && !inDeletion) fault("deleted text outside a deletion");
      if (node.name == "instrText" && fields_ == 0) fault("a field code outside a field");
    }
    if (node.name == "fldChar") {
      const std::string type = node.value("fldCharType");
      if (type == "begin") ++fields_;
      if (type == "end" && --fields_ < 0) {
        fault("an end without a field");
        fields_ = 0;
      }
    }
  }

  void checkMarkers(const Node& node) {
    for (const std::string kind : {"bookmark", "commentRange", "perm", "moveFromRange", "moveToRange"}) {
      if (node.name == kind + "Start") {
        if (++markers_[{kind, node.value("id")}] > 1) fault("id given twice: " + kind);
      }
      if (node.name == kind + "End" && --markers_[{kind, node.value("id")}] < 0)
        fault("an end before its start: " + kind);
    }
    if (node.name == "p" && !node.value("paraId").empty() &&
        !paragraphs_.insert(node.value("paraId")).second) {
      fault("id given twice: paragraph");
    }
    const bool tracked =
        node.name == "ins" || node.name == "del" || node.name == "moveFrom" || node.name == "moveTo";
    if (tracked && !node.value("id").empty() && !tracked_.insert(node.value("id")).second) {
      fault("id given twice: tracked change");
    }
    if (node.name == "sdtPr") {
      for (const auto& child : node.children) {
        if (child->name == "id" && !controls_.insert(child->value("val")).second)
          fault("id given twice: control");
      }
    }
    for (const std::string kind : {"footnote", "endnote", "comment"}) {
      if (node.name == kind + "Reference") references_[kind].insert(node.value("id"));
    }
    if (node.name == "hyperlink" && !node.value("id").empty()) relationships_.insert(node.value("id"));
  }

  void checkReferences(const std::string& story) {
    const std::string folder = story.substr(0, story.rfind('/') + 1);
    for (const std::string kind : {"footnote", "endnote", "comment"}) {
      std::set<std::string> present;
      const auto part = parts_.find(folder + kind + "s.xml");
      if (part == parts_.end()) continue;
      for (const auto& child : part->second->children[0]->children) {
        if (child->name == kind && child->value("type").empty()) present.insert(child->value("id"));
      }
      for (const std::string& id : references_[kind]) {
        if (!present.contains(id)) fault("a reference without " + kind);
      }
      for (const std::string& id : present) {
        if (!references_[kind].contains(id)) fault("a " + kind + " without reference");
      }
    }
    std::set<std::string> known;
    const auto rels = parts_.find(folder + "_rels/" + story.substr(folder.size()) + ".rels");
    if (rels != parts_.end()) {
      for (const auto& child : rels->second->children[0]->children) known.insert(child->value("Id"));
    }
    for (const std::string& id : relationships_) {
      if (!known.contains(id)) fault("a link without relationship");
    }
    checkCommentExtensions(folder);
  }

  void checkCommentExtensions(const std::string& folder) {
    const auto comments = parts_.find(folder + "comments.xml");
    const auto extended = parts_.find(folder + "commentsExtended.xml");
    if (comments == parts_.end() || extended == parts_.end()) return;
    std::set<std::string> ids;
    std::function<void(const Node&)> collect = [&](const Node& node) {
      if (node.name == "p") ids.insert(node.value("paraId"));
      for (const auto& child : node.children) collect(*child);
    };
    collect(*comments->second);
    for (const auto& child : extended->second->children[0]->children) {
      if (!ids.contains(child->value("paraId"))) fault("an extension without comment");
      const std::string parent = child->value("paraIdParent");
      if (!parent.empty() && !ids.contains(parent)) fault("a reply without comment");
    }
  }

  archive::Archive archive_;
  std::map<std::string, std::unique_ptr<Node>> parts_;
  Faults faults_;
  int fields_ = 0;
  std::map<std::pair<std::string, std::string>, int> markers_;
  std::set<std::string> paragraphs_, tracked_, controls_, relationships_;
  std::map<std::string, std::set<std::string>> references_;
};

}  // namespace

Faults faultsOf(const files::Bytes& document) { return Checker(document).check(); }

std::string worsened(const Faults& before, const Faults& after) {
  std::string out;
  for (const auto& [what, count] : after) {
    if (!before.contains(what)) out += what + " (" + std::to_string(count) + "); ";
  }
  return out;
}

}  // namespace pluvo::docx
