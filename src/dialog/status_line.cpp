#include "status_line.h"

#include "base/text.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace pluvo::dialog {

namespace {

/// Of a path, as the user knows it.
std::u16string lastName(std::u16string_view path) {
  const auto isSeparator = [](char16_t letter) { return letter == u'/' || letter == u'\\'; };
  while (path.size() > 1 && isSeparator(path.back())) path.remove_suffix(1);
  const auto name = std::find_if(path.rbegin(), path.rend(), isSeparator).base();
  return {name == path.end() ? path.begin() : name, path.end()};
}

/// A word processor that does not answer is asked again by Execute, which tells.
bool hasDocument(Execution& execution) {
  try {
    return execution.hasDocument();
  } catch (const errors::Fault&) {
    return true;
  }
}

}  // namespace

StatusLine::StatusLine(forms::Form& form, Pages& pages, forms::MultiPage& tabs, scanner::Folders& folders,
                       FileChoice& files, Execution& execution, OptionsFile& options, NotReached notReached)
    : form_(form),
      files_(pages.pgMultiFiles),
      folders_(folders),
      execution_(execution),
      notReached_(std::move(notReached)) {
  files_.txtFilePath.Change.handledBy([this] { tellOverWhat(); });
  auto& list = files_.lbxPotentialFiles;
  list.changed.handledBy([this, &list] {
    if (std::exchange(listed_, list.ListCount()) != list.ListCount()) tellOverWhat();
  });
  tabs.Change.handledBy([this] { tellOverWhat(); });
  files.Listed.handledBy([this, &list] {
    if (list.ListCount() == 0) tellWhereNothingWasFound();
  });
  execution.Executed.handledBy([this] {
    confirms_ = execution_.confirming();
    // The message on the run before is over; the file at hand takes its place.
    if (confirms_ && path().empty()) tellOverWhat();
    if (!confirms_) tellOfRun();
  });
  // Where nothing awaited a decision, Execute has not returned yet, and tells of the run itself.
  execution.Confirmed.handledBy([this] {
    if (std::exchange(confirms_, false)) tellOfRun();
  });
  form.Activated.handledBy([this] { documentsChanged(); });
  options.Saved.handledBy([this] { form_.StatusText(u"Options saved"); });
  tellOverWhat();
}

const std::u16string& StatusLine::path() const { return files_.txtFilePath.Text(); }

void StatusLine::tellFile(const std::u16string& path, std::size_t number, std::size_t count) {
  form_.StatusText(lastName(path) + u", file " + base::decimal(static_cast<std::int64_t>(number)) + u" of " +
                   base::decimal(static_cast<std::int64_t>(count)));
}

void StatusLine::documentsChanged() {
  if (form_.StatusText() == toldOverWhat_) tellOverWhat();
}

void StatusLine::tellOverWhat() {
  toldOverWhat_ = overWhat();
  form_.StatusText(toldOverWhat_);
}

std::u16string StatusLine::overWhat() const {
  if (path().empty()) {
    return hasDocument(execution_) ? u"Execute runs over this document"
                                   : u"No document is open.  Open a document first, or choose a folder.";
  }
  if (listed_ == 0) return u"Execute runs over the files in " + lastName(path());
  return u"Execute runs over " + base::decimal(static_cast<std::int64_t>(listed_)) +
         (listed_ == 1 ? u" file in " : u" files in ") + lastName(path());
}

void StatusLine::tellOfRun() {
  notReached_([this](const std::u16string& sentence) {
    if (sentence.empty()) {
      tellOverWhat();
    } else {
      form_.StatusText(sentence);
    }
    if (execution_.FilesToProcess().empty()) tellWhereNothingWasFound();
  });
}

void StatusLine::tellWhereNothingWasFound() {
  if (path().empty()) return;
  form_.StatusText(folders_.isFolder(path()) ? u"No files of these types were found in " + lastName(path())
                                             : u"There is no folder " + path());
}

}  // namespace pluvo::dialog
