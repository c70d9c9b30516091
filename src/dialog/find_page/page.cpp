#include "page.h"

#include "base/text.h"
#include "placing.h"
#include "word/enums.h"

namespace pluvo::dialog {

namespace {

using forms::Cell;

constexpr const char16_t* kDistanceTip =
    u"Choose the distance that the End of the 'Begins with' and Beginning of the 'Ends with' text are "
    u"allowed to be";

struct Colour {
  const char16_t* text;
  word::WdColorIndex index;
};
constexpr Colour kColours[] = {
    {u"Yellow", word::wdYellow}, {u"Pink", word::wdPink}, {u"Green", word::wdGreen},
    {u"Blue", word::wdBlue},     {u"Red", word::wdRed},   {u"No Highlight", word::wdNoHighlight},
};

}  // namespace

FindPage::FindPage() : Page(u"pgFindAndReplace", u"Find & Replace", u"Find && Replace Main Screen") {
  place(*this,
        {{lblBeginText, Cell{1, 0, 1, 6}},
         {txtBeginText, Cell{2, 0, 3, 6},
          u"Type, Ctrl-V Paste*, or Right-Click Select - the beginning portion of your text to find here "
          u"(Required)"},
         {lblEndText, Cell{7, 0, 1, 6}},
         {txtEndText, Cell{8, 0, 1, 6},
          u"Type, Ctrl-V Paste*, or Right-Click Select - the ending portion of your text to find here"},
         {lblInsideText1, Cell{10, 0, 1, 6}},
         {txtInsideText1, Cell{11, 0, 1, 6},
          u"Type, Ctrl-V Paste*, or Right-Click Select - additional text here that will restrict the large "
          u"block find a little further"},
         {Label3, Cell{5, 0, 1, 6}},
         {cboxNumberDistanceApart, Cell{6, 0, 1, 3}, kDistanceTip},
         {cboxUnitDistanceApart, Cell{6, 3, 1, 3}, kDistanceTip},
         {lblOperation1, Cell{2, 6, 1, 2}},
         {cboxProcOperation1, Cell{2, 8, 1, 4}, u"Choose an operation"},
         {Label2, Cell{1, 6, 1, 6}},
         {cboxProcSelection1, Cell{3, 9, 1, 3}, u"Choose a location to operate on"},
         {cboxProcRelativePosition1, Cell{3, 6, 1, 3}},
         {lblOpThis1, Cell{5, 6, 1, 6}},
         {txtTextToEnter, Cell{6, 6, 3, 6},
          u"When you choose insert or replace this is the text that will be used for the operation"},
         {Label1, Cell{9, 0, 1, 6}},
         {cboxHighlighters, Cell{4, 8, 1, 4}, u"Color up your document"},
         {txtOperationDisplay, Cell{12, 0, 1, 12}},
         {cmdViewOperation, Cell{9, 6, 1, 3},
          u"Take a look at what the above Find && Operate Procedure will perform"},
         {cmdExecuteFAR, Cell{9, 9, 1, 3},
          u"Begin parsing through the text performing the operation specified"},
         {lblFind, Cell{0, 1, 1, 11}},
         {Image1, Cell{0, 0, 1, 1}},
         {lblPleaseWait2, Cell{10, 6, 2, 6}}});
  // As the eye goes, left to right and down; the left half first.
  tabOrder({&txtBeginText, &cboxNumberDistanceApart, &cboxUnitDistanceApart, &txtEndText, &txtInsideText1,
            &cboxProcOperation1, &cboxProcRelativePosition1, &cboxProcSelection1, &cboxHighlighters,
            &txtTextToEnter, &cmdViewOperation, &cmdExecuteFAR, &txtOperationDisplay});
  for (forms::TextBox* box :
       {&txtBeginText, &txtEndText, &txtInsideText1, &txtTextToEnter, &txtOperationDisplay})
    box->MultiLine(true);
  txtOperationDisplay.ReadOnly(true);
  cboxNumberDistanceApart.Text(u"Same");
  cboxUnitDistanceApart.Text(u"Paragraph(s)");
  cboxProcOperation1.Text(u"None");
  cboxProcSelection1.Text(u"Selection");
  cboxHighlighters.Text(u"Yellow");
  for (forms::Control* control : std::initializer_list<forms::Control*>{
           &txtInsideText1, &cboxProcSelection1, &cboxProcRelativePosition1, &txtTextToEnter})
    switchOn(*control, false);
  cboxHighlighters.Visible(false);
  lblPleaseWait2.Visible(false);
  cmdViewOperation.StaysInSight(true);
  cmdExecuteFAR.StaysInSight(true);
}

void FindPage::fillLists() {
  fillNumbered(cboxProcOperation1, {u"None", u"Insert", u"Replace", u"Delete", u"Highlight"});
  fillNumbered(cboxProcSelection1, {u"Selection", u"Beginning", u"Ending", u"Inside Text"});
  fillNumbered(cboxProcRelativePosition1, {u"Before", u"After"});
  fillPlain(cboxNumberDistanceApart,
            {u"Same", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u"(More...)"});
  fillNumbered(cboxUnitDistanceApart, {u"Word(s)", u"Sentence(s)", u"Paragraph(s)", u"Entire Document"});
  for (const Colour& colour : kColours) cboxHighlighters.AddItem(colour.text, base::decimal(colour.index));
}

}  // namespace pluvo::dialog
