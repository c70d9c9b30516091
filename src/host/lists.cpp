#include "lists.h"

#include "base/text.h"
#include "word/enums.h"

#include <cstdint>
#include <initializer_list>

namespace pluvo::host {

namespace {

using forms::ComboBox;

using Texts = std::initializer_list<const char16_t*>;

struct Colour {
  const char16_t* text;
  word::WdColorIndex index;
};
constexpr Colour kColours[] = {
    {u"Yellow", word::wdYellow}, {u"Pink", word::wdPink}, {u"Green", word::wdGreen},
    {u"Blue", word::wdBlue},     {u"Red", word::wdRed},   {u"No Highlight", word::wdNoHighlight},
};

/// The code of a row is its number.
void fillNumbered(forms::Form& form, const char16_t* name, Texts texts) {
  auto& list = form.get<ComboBox>(name);
  for (const char16_t* text : texts)
    list.AddItem(text, base::decimal(static_cast<std::int64_t>(list.ListCount())));
}

void fillPlain(forms::Form& form, const char16_t* name, Texts texts) {
  auto& list = form.get<ComboBox>(name);
  for (const char16_t* text : texts) list.AddItem(text);
}

}  // namespace

void fillLists(forms::Form& form) {
  fillNumbered(form, u"cboxProcOperation1", {u"None", u"Insert", u"Replace", u"Delete", u"Highlight"});
  fillNumbered(form, u"cboxProcSelection1", {u"Selection", u"Beginning", u"Ending", u"Inside Text"});
  fillNumbered(form, u"cboxProcRelativePosition1", {u"Before", u"After"});
  fillPlain(form, u"cboxNumberDistanceApart",
            {u"Same", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u"(More...)"});
  fillNumbered(form, u"cboxUnitDistanceApart",
               {u"Word(s)", u"Sentence(s)", u"Paragraph(s)", u"Entire Document"});
  auto& colours = form.get<ComboBox>(u"cboxHighlighters");
  for (const Colour& colour : kColours) colours.AddItem(colour.text, base::decimal(colour.index));
  fillPlain(form, u"cboxLevelsDeep", {u"All", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9"});
}

void setProductTips(forms::Form& form) {
  form.get<forms::CheckBox>(u"chkMatchWholeWords")
      .ControlTipText(u"Microsoft\u00AE Word\u00AE Stanadard Whole Word Matching");
  form.get<forms::CheckBox>(u"chkMatchCase")
      .ControlTipText(u"Microsoft\u00AE Word\u00AE Standard Match Case");
}

void setNotice(forms::Form& form) {
  form.get<forms::Label>(u"lblNotice")
      .Caption(u"PLUVO changes what you tell it to change.  Keep a copy of documents that have no other.");
}

void mirrorNotice(forms::Form& form) {
  auto& notice = form.get<forms::Label>(u"lblPleaseWait");
  auto& mirror = form.get<forms::Label>(u"lblPleaseWait2");
  notice.changed.handledBy([&notice, &mirror] {
    mirror.Caption(notice.Caption());
    mirror.Visible(notice.Visible());
  });
}

}  // namespace pluvo::host
