#include "options_file.h"

#include "base/data_file.h"
#include "base/names.h"
#include "input_field.h"

#include <algorithm>
#include <vector>

namespace pluvo::dialog {

namespace {

constexpr char16_t kSeparator = u';';

/// None for an empty text.
std::vector<std::u16string> split(const std::u16string& text) {
  std::vector<std::u16string> fields;
  for (std::size_t at = 0; at <= text.size() && !text.empty();) {
    const std::size_t end = std::min(text.find(kSeparator, at), text.size());
    fields.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return fields;
}

const std::u16string& fieldAt(const std::vector<std::u16string>& fields, std::size_t index) {
  if (index >= fields.size()) throw errors::subscriptOutOfRange();
  return fields[index];
}

/// The control, where it is one of those that are kept.
forms::CheckBox* kept(forms::Control* control) {
  if (!control->Name().starts_with(u"chk")) return nullptr;
  auto* box = dynamic_cast<forms::CheckBox*>(control);
  if (box == nullptr) throw errors::objectNotSet();
  return box;
}

}  // namespace

OptionsFile::OptionsFile(OptionsPage& page, errors::Context& context, const std::u16string& dataFolder)
    : page_(page), context_(context), path_(dataFolder + u"PLUVO" + u".cfg") {
  page.cmdSaveOptions.Click.handledBy([this] { cmdSaveOptions_Click(); });
}

std::u16string OptionsFile::optionsText() {
  return errors::guarded(context_, u"FF:01", [&] {
    std::u16string text;
    for (forms::Control* control : page_.controls()) {
      if (const forms::CheckBox* box = kept(control)) text += box->valueText() + kSeparator;
    }
    return text;
  });
}

void OptionsFile::load() {
  errors::guarded(context_, u"FF:02", [&] {
    const auto line = firstInputField(path_);
    if (!line) return;
    const std::vector<std::u16string> fields = split(*line);
    reserved0_ = fieldAt(fields, 0);
    reserved1_ = fieldAt(fields, 1);
    std::size_t k = 0;
    for (forms::Control* control : page_.controls()) {
      forms::CheckBox* const box = kept(control);
      if (box == nullptr) continue;
      ++k;
      // The test is of k, one less than the value read: a line that is short by one value is a fault.
      if (k < fields.size()) box->valueText(fieldAt(fields, k + 1));
    }
  });
}

void OptionsFile::save() {
  constexpr std::u16string_view kTag = u"FF:03";
  errors::guarded(context_, kTag, [&] {
    const std::u16string values = optionsText();
    context_.locationTag = kTag;
    const std::u16string line = reserved0_ + kSeparator + reserved1_ + kSeparator + values;
    std::ofstream output = base::openDataFile(path_);
    output << base::nameBytes(line) << "\r\n";
    output.close();
    if (!output) {
      throw errors::Fault(errors::kPathFileAccess,
                          u"The options cannot be saved to \"" + path_ +
                              u"\": see that its folder may be written to and the disk is not full");
    }
    Saved.raise();
  });
}

void OptionsFile::cmdSaveOptions_Click() {
  errors::guarded(context_, u"FF:09", [&] { save(); });
}

}  // namespace pluvo::dialog
