#include "report_text.h"

#include "base/text.h"

namespace pluvo::errors {

namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";

struct Values {
  std::u16string number;
  std::u16string description;
  std::u16string source;
  std::u16string helpFile;
  std::u16string helpContext;
};

void add(std::u16string& report, const Values& fault, std::int32_t detailLevel) {
  const std::u16string end(kLineEnd);
  switch (detailLevel) {
    case 0:
      report = u"Error (" + fault.number + u"):" + fault.description + end + u"  Occured in " + fault.source;
      if (!fault.helpFile.empty())
        report += end + u"    HelpFile:" + fault.helpFile + u" Context:" + fault.helpContext;
      break;
    case 1:
      report += end + u"Error Code(" + fault.number + u")";
      break;
    case 2:
      report += end + u"Error Description:" + fault.description;
      break;
    case 3:
      report += end + u"Error Code(" + fault.number + u"):" + fault.description + end;
      break;
    default:
      report += end + u"Error Code(" + fault.number + u"):" + fault.description + end + u"  Occured in " +
                fault.source;
  }
}

}  // namespace

void addReport(std::u16string& report, const Fault& fault, std::int32_t detailLevel) {
  add(report,
      {base::decimal(fault.number), fault.description, fault.source, fault.helpFile,
       base::decimal(fault.helpContext)},
      detailLevel);
}

void addReport(std::u16string& report, const NamedValues& error, std::int32_t detailLevel) {
  add(report,
      {error(u"Number"), error(u"Description"), error(u"Source"), error(u"HelpFile"), error(u"HelpContext")},
      detailLevel);
}

std::u16string escapedForTable(std::u16string_view report) {
  std::u16string escaped;
  for (std::size_t i = 0; i < report.size(); ++i) {
    if (report.substr(i, kLineEnd.size()) == kLineEnd) {
      escaped += u':';
      ++i;
    } else {
      if (report[i] == u'\'' || report[i] == u'"') escaped += report[i];
      escaped += report[i];
    }
  }
  return escaped;
}

}  // namespace pluvo::errors
