#include "package.h"

#include "root_elements.h"

#include <array>
#include <optional>
#include <set>
#include <vector>

namespace pluvo::docx {

using errors::DocumentError;
using errors::Problem;

namespace {

constexpr std::array<std::pair<std::string_view, Role>, 8> kRoles = {{
    {"styles", Role::styles},
    {"settings", Role::settings},
    {"footnotes", Role::footnotes},
    {"endnotes", Role::endnotes},
    {"comments", Role::comments},
    {"commentsExtended", Role::commentsExtended},
    {"commentsIds", Role::commentsIds},
    {"commentsExtensible", Role::commentsExtensible},
}};

DocumentError damaged(const std::string& sentence) { return {Problem::damaged, sentence}; }

std::string contentTypeOf(const zip::Archive& archive, const zip::Member& types, std::string_view part) {
  std::string result;
  forEachInRoot(archive, types, Name::typeOverride, [&](const xml::Scanner& scanner) {
    if (resolved("", valueOf(scanner, Name::partName)) == part) result = valueOf(scanner, Name::contentType);
  });
  if (!result.empty()) return result;
  forEachInRoot(archive, types, Name::typeDefault, [&](const xml::Scanner& scanner) {
    const std::string ending = "." + valueOf(scanner, Name::extension);
    if (std::string_view(part).ends_with(ending)) result = valueOf(scanner, Name::contentType);
  });
  return result;
}

/// The kind of a ZIP archive that is no Word document, as far as its members tell.
std::string_view kindOf(const zip::Archive& archive, std::string_view mainType) {
  const auto has = [&](std::string_view word) { return mainType.find(word) != std::string_view::npos; };
  if (has("spreadsheetml") || has("ms-excel")) return "a spreadsheet";
  if (has("presentationml") || has("ms-powerpoint")) return "a presentation";
  if (has("visio")) return "a drawing";
  const zip::Member* const mimetype = archive.find("mimetype");
  if (mimetype == nullptr || mimetype->size > 200) {
    return archive.find("[Content_Types].xml") == nullptr ? "an ordinary ZIP archive" : "";
  }
  const base::Bytes bytes = archive.read(*mimetype);
  const std::string_view type(reinterpret_cast<const char*>(bytes.view.data()), bytes.view.size());
  if (type.find("opendocument.spreadsheet") != std::string_view::npos) return "an OpenDocument spreadsheet";
  if (type.find("opendocument.presentation") != std::string_view::npos) return "an OpenDocument presentation";
  if (type.find("opendocument") != std::string_view::npos) return "an OpenDocument text";
  return type.find("epub") != std::string_view::npos ? "an e-book" : "an ordinary ZIP archive";
}

DocumentError otherKind(std::string_view kind) {
  return damaged("The file is no Word document: it looks like " + std::string(kind) +
                 "; give it the right extension, or get an intact copy.");
}

bool isStory(std::string_view step) {
  return step == "header" || step == "footer" || step == "footnotes" || step == "endnotes" ||
         step == "comments";
}

bool isSignature(std::string_view type) { return type.ends_with("/digital-signature/origin"); }

std::string findMainPart(const std::vector<Relationship>& relationships) {
  std::set<std::string> found;
  for (const Relationship& relationship : relationships) {
    if (isSignature(relationship.type)) {
      throw DocumentError(Problem::signature,
                          "The document is digitally signed, and a change would make the signature invalid; "
                          "remove the signature in a word processor first.");
    }
    if (relationship.kind() == "officeDocument") found.insert(relationship.part);
  }
  if (found.size() > 1) {
    throw damaged(
        "The package names two main parts, so that it is not clear which is the document; get an intact "
        "copy.");
  }
  return found.empty() ? std::string() : *found.begin();
}

}  // namespace

const zip::Member* Package::member(Role role) const {
  const auto found = parts.find(role);
  return found == parts.end() ? nullptr : archive.find(found->second);
}

Package openPackage(base::Bytes bytes) {
  thread_local PackageMemory memory;  // documents that one program wrote
  return openPackage(zip::Archive::open(std::move(bytes)), memory);
}

Package openPackage(zip::Archive archive, PackageMemory& memory) {
  Package package{std::move(archive), {}, {}, {}, {}, {}};
  const zip::Member* const types = package.archive.find("[Content_Types].xml");
  if (types == nullptr) throw otherKind(kindOf(package.archive, {}));
  const auto relationshipsOf = [&](std::string_view part) -> std::vector<Relationship> {
    const zip::Member* const member = package.archive.find(relationshipPartOf(part));
    if (member == nullptr) return {};
    return memory.relationships.of(package.archive, *member, part,
                                   [&] { return relationshipsIn(package.archive, part); });
  };
  package.rootRelationships = relationshipsOf("");
  package.mainPart = findMainPart(package.rootRelationships);
  const zip::Member* const main = package.archive.find(package.mainPart);
  if (package.mainPart.empty() || main == nullptr) {
    throw damaged("The package lacks its main part, the one with the text; get an intact copy.");
  }
  const std::string type = memory.contentTypes.of(package.archive, *types, package.mainPart, [&] {
    return contentTypeOf(package.archive, *types, package.mainPart);
  });
  if (type.find("wordprocessingml") == std::string::npos && type.find("ms-word") == std::string::npos) {
    if (const std::string_view kind = kindOf(package.archive, type); !kind.empty()) throw otherKind(kind);
  }
  package.isTemplate = type.find("emplate") != std::string::npos;
  package.mainRelationships = relationshipsOf(package.mainPart);
  for (const Relationship& relationship : package.mainRelationships) {
    if (isStory(relationship.kind())) package.stories.push_back(relationship.part);
    for (const auto& [step, role] : kRoles) {
      if (relationship.kind() != step) continue;
      const auto [place, isNew] = package.parts.emplace(role, relationship.part);
      if (!isNew && place->second != relationship.part) {
        throw damaged("The package has two parts for its " + std::string(step) +
                      ", so that it is not clear which holds; get an intact copy.");
      }
    }
  }
  return package;
}

}  // namespace pluvo::docx
