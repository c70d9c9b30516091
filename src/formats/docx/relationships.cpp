#include "relationships.h"

#include "root_elements.h"

#include <algorithm>

namespace pluvo::docx {

namespace {

std::string_view lastStep(std::string_view type) { return type.substr(type.rfind('/') + 1); }

std::string_view folderOf(std::string_view part) {
  const std::size_t slash = part.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : part.substr(0, slash + 1);
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::string unescaped(std::string_view target) {
  std::string result;
  for (std::size_t i = 0; i < target.size(); ++i) {
    const int high = target[i] == '%' && i + 2 < target.size() ? hexDigit(target[i + 1]) : -1;
    const int low = high >= 0 ? hexDigit(target[i + 2]) : -1;
    if (low >= 0) {
      result.push_back(static_cast<char>(high * 16 + low));
      i += 2;
    } else {
      result.push_back(target[i] == '\\' ? '/' : target[i]);
    }
  }
  return result;
}

}  // namespace

std::string relationshipPartOf(std::string_view source) {
  return std::string(folderOf(source)) + "_rels/" + std::string(lastStep(source)) + ".rels";
}

std::string resolved(std::string_view source, std::string_view target) {
  std::string path = unescaped(target.substr(0, target.find('#')));
  path = path.starts_with('/') ? path.substr(1) : std::string(folderOf(source)) + path;
  std::vector<std::string> steps;
  for (std::size_t at = 0; at <= path.size();) {
    const std::size_t slash = std::min(path.find('/', at), path.size());
    const std::string step = path.substr(at, slash - at);
    if (step == "..") {
      if (!steps.empty()) steps.pop_back();
    } else if (!step.empty() && step != ".") {
      steps.push_back(step);
    }
    at = slash + 1;
  }
  std::string result;
  for (const std::string& step : steps) result += (result.empty() ? "" : "/") + step;
  return result;
}

std::vector<Relationship> relationshipsIn(const zip::Archive& archive, std::string_view source) {
  std::vector<Relationship> result;
  const zip::Member* const member = archive.find(relationshipPartOf(source));
  if (member == nullptr) return result;
  forEachInRoot(archive, *member, Name::relationship, [&](const xml::Scanner& scanner) {
    if (valueOf(scanner, Name::targetMode) == "External") return;
    result.push_back({valueOf(scanner, Name::relationType), resolved(source, valueOf(scanner, Name::target)),
                      valueOf(scanner, Name::relationId)});
  });
  return result;
}

std::string_view Relationship::kind() const { return lastStep(type); }

}  // namespace pluvo::docx
