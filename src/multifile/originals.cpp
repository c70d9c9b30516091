#include "multifile/originals.h"

#include "base/text.h"
#include "errors/clsErrorLogging.h"
#include "fileops/clsFileOperations.h"
#include "multifile/questions.h"

#include <algorithm>
#include <utility>

namespace pluvo::multifile {

namespace {

/// A name that sorts by time; not every system has colons in names.
std::u16string timeName() {
  std::u16string name = errors::dateAndTime();
  std::ranges::replace(name, u':', u'.');
  return name;
}

/// A whole path as a way below a folder: without what only its beginning may have.
std::u16string asWay(std::u16string path, const std::u16string& separator) {
  std::erase(path, u':');
  while (path.starts_with(separator)) path.erase(0, separator.size());
  return path;
}

}  // namespace

Originals::Originals(errors::Context& context, forms::MessageBoxes& boxes, std::u16string folder,
                     std::u16string separator)
    : context_(context),
      boxes_(boxes),
      folder_(std::move(folder)),
      separator_(std::move(separator)),
      actions_(fileops::machineFileActions()) {}

Originals::~Originals() = default;

void Originals::begin(std::u16string searched) {
  searched_ = std::move(searched);
  run_.clear();
  count_ = 0;
}

bool Originals::keep(const std::u16string& path) {
  if (copy(path)) {
    ++count_;
    return true;
  }
  return saveWithoutOriginal(boxes_, path);
}

std::u16string Originals::told() const {
  if (count_ == 0) return {};
  return (count_ == 1
              ? u"The original of 1 file is in "
              : u"The originals of " + base::decimal(static_cast<std::int64_t>(count_)) + u" files are in ") +
         run_;
}

/// A folder that does not exist yet: an existing one is another run's.
bool Originals::makeRunFolder() {
  constexpr int kMostTries = 100;
  const std::u16string all = folder_ + u"Originals" + separator_;
  makeFolders(all);
  const std::u16string name = all + timeName();
  for (int number = 1; number <= kMostTries; ++number) {
    const std::u16string numbered = number == 1 ? name : name + u" (" + base::decimal(number) + u")";
    if (actions_->createFolder(numbered) != fileops::kDone) continue;
    run_ = numbered + separator_;
    return true;
  }
  return false;
}

/// Those on the way to the last separator that are missing. The copy reports a folder that cannot be made.
void Originals::makeFolders(const std::u16string& path) {
  for (std::size_t at = path.find(separator_, 1); at != std::u16string::npos;
       at = path.find(separator_, at + 1))
    actions_->createFolder(path.substr(0, at));
}

bool Originals::copy(const std::u16string& path) {
  if (run_.empty() && !makeRunFolder()) return false;
  const bool isBelow = !searched_.empty() && path.starts_with(searched_);
  const std::u16string kept = run_ + asWay(isBelow ? path.substr(searched_.size()) : path, separator_);
  makeFolders(kept);
  fileops::clsFileOperations copy(context_, boxes_, *actions_, separator_);
  constexpr std::int32_t kNeverCreate = 2;
  copy.AutoCreateFolders(kNeverCreate);
  const auto split = [&](const std::u16string& whole) { return whole.rfind(separator_) + separator_.size(); };
  copy.SourcePath(path.substr(0, split(path)));
  copy.SourceFile(path.substr(split(path)));
  copy.DestinationPath(kept.substr(0, split(kept)));
  copy.DestinationFile(kept.substr(split(kept)));
  copy.Copy();
  return !copy.Failures();
}

}  // namespace pluvo::multifile
