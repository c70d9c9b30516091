#include "base/names.h"
#include "base/text.h"
#include "errors/clsErrorLogging.h"
#include "errors/context.h"
#include "errors/guarded.h"
#include "errors/problem.h"
#include "errors/reports.h"
#include "report_text.h"
#include "storage/files/scratch.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <vector>

namespace pluvo::errors {
namespace {

struct Shown : MessageSink {
  void show(const std::u16string& text, const std::optional<std::u16string>& title) override {
    texts.push_back(text);
    lastTitle = title;
  }
  std::vector<std::u16string> texts;
  std::optional<std::u16string> lastTitle;
};

class Reporter : public testing::Test {
 protected:
  Reporter() {
    context.reporter = std::make_shared<clsErrorLogging>(context.currentFault, shown, [] { return u"NOW"; });
    context.stopPreface = u"Stopped.\r\n\r\n";
  }
  std::u16string log(const char* name) const { return base::nameText(folder.path(name)); }

  files::Scratch folder;
  Shown shown;
  Context context;
  clsErrorLogging& reporter() { return *context.reporter; }
};

TEST(Guarded, ReportsWhateverIsThrownUnderItsTag) {
  const struct {
    std::function<void()> doing;
    const char* report;
    const char16_t* text;
  } cases[] = {{[] { throw objectNotSet(); }, "91 t:01", u"Object variable or With block variable not set"},
               {[] { throw invalidUseOfNull(); }, "94 t:01", u"Invalid use of Null"},
               {[] { throw std::bad_alloc(); }, "7 t:01", u"Out of memory"},
               {[] { throw std::runtime_error("odd"); }, "51 t:01", u"odd"},
               {[] { throw 1; }, "51 t:01", u"Internal error"}};
  for (const auto& [doing, report, text] : cases) {
    WatchedContext watched;
    EXPECT_EQ(guarded(watched.context, u"t:01", [act = doing] { return act(), 5; }), 0);
    EXPECT_TRUE(faultOf(watched.context, u"t:01", doing));
    guardedOn(watched.context, doing);
    EXPECT_EQ(watched.reports, (std::vector<std::string>(3, report)));
    EXPECT_EQ(watched.context.currentFault.description, text);
    Context alone;
    EXPECT_THROW(guarded(alone, u"t:01", doing), Fault) << "there is nobody to report it to";
  }
}

TEST(Problems, HaveTheNamesThatScriptsRelyOn) {
  std::string names;
  for (int problem = 0; problem <= static_cast<int>(Problem::io); ++problem)
    names += std::string(nameOf(static_cast<Problem>(problem))) + ' ';
  EXPECT_EQ(names,
            "locked read-only password protected signed damaged unsupported encoding too-large temporary "
            "changed refused io ");
}

TEST_F(Reporter, WordsAFaultByDetailLevel) {
  const Fault plain(-2146823680, u"It's out", u"Host");
  const Fault helped(7, u"", u"", u"word.hlp", 12);
  const struct {
    std::int32_t level;
    const Fault& fault;
    std::u16string text;
  } cases[] = {{0, plain, u"Error (-2146823680):It's out\r\n  Occured in Host"},
               {0, helped, u"Error (7):\r\n  Occured in \r\n    HelpFile:word.hlp Context:12"},
               {1, plain, u"\r\nError Code(-2146823680)"},
               {2, plain, u"\r\nError Description:It's out"},
               {3, plain, u"\r\nError Code(-2146823680):It's out\r\n"},
               {4, plain, u"\r\nError Code(-2146823680):It's out\r\n  Occured in Host"},
               {-1, helped, u"\r\nError Code(7):\r\n  Occured in "}};
  for (const auto& [level, fault, text] : cases) {
    SCOPED_TRACE(level);
    context.currentFault = fault;
    reporter().ErrorDetailLevel(level);
    reporter().ProcessErrors();
    EXPECT_EQ(shown.texts.back(), text);
    reporter().ProcessErrors(u"Before");
    EXPECT_EQ(shown.texts.back(), u"Before\r\n" + text);

    const Fault& named = fault;
    std::u16string fromNames = level == 0 ? u"is replaced" : u"";
    addReport(
        fromNames,
        [&](std::u16string_view name) {
          if (name == u"Number") return base::decimal(named.number);
          if (name == u"Description") return named.description;
          if (name == u"Source") return named.source;
          return name == u"HelpFile" ? named.helpFile : base::decimal(named.helpContext);
        },
        level);
    EXPECT_EQ(fromNames, text);
  }
}

TEST_F(Reporter, OpensAReportWithPrefaceAndTag) {
  reporter().ErrorDetailLevel(3);
  reporter().ErrorTitleCaption(u"Oh");
  const bool result = guarded(context, u"outer:1", [&] {
    context.locationTag = u"inner:2";
    throw overflow();
    return true;
  });
  EXPECT_FALSE(result);
  EXPECT_EQ(shown.texts,
            (std::vector<std::u16string>{u"Stopped.\r\n\r\ninner:2\r\n\r\nError Code(6):Overflow\r\n"}));
  EXPECT_EQ(shown.lastTitle, u"Oh");
  reporter().ErrorTitleCaption(u"");
  reporter().ProcessErrors();
  EXPECT_EQ(shown.lastTitle, std::nullopt);
}

TEST_F(Reporter, AppendsEachReportToTheLog) {
  const std::string separator = std::string(64, '-') + "/\r\n";
  reporter().SendErrors_ToTxtFile(log("errörs.txt"));
  reporter().ErrorDetailLevel(1);
  context.report(overflow());
  context.report(typeMismatch());
  EXPECT_EQ(folder.get("errörs.txt"), "\r\nNOW\r\nStopped.\r\n\r\n\r\n\r\nError Code(6)\r\n" + separator +
                                          "\r\nNOW\r\nStopped.\r\n\r\n\r\n\r\nError Code(13)\r\n" +
                                          separator);
}

TEST_F(Reporter, ShowsTheReportWhateverBecomesOfTheLog) {
  folder.put("file", "");
  std::filesystem::create_directory(folder.at("folder"));
  const struct {
    const char* log;
    std::int32_t level;
    std::u16string report;
    bool isKept;
  } cases[] = {{"new/and newer/errors.txt", 1, u"\r\nError Code(6)", true},
               {"file/errors.txt", 1, u"\r\nError Code(6)\r\n", false},
               {"folder", 3, u"\r\nError Code(6):Overflow\r\n", false}};
  context.currentFault = overflow();
  for (const auto& [name, level, report, isKept] : cases) {
    reporter().ErrorDetailLevel(level);
    reporter().SendErrors_ToTxtFile(log(name));
    reporter().ProcessErrors();
    EXPECT_EQ(std::filesystem::is_regular_file(folder.at(name)), isKept) << name;
    const std::u16string line = u"This report cannot be kept in \"" + log(name) +
                                u"\": see that its folder may be written to and the disk is not full.";
    EXPECT_EQ(shown.texts.back(), isKept ? report : report + line);
  }
}

TEST_F(Reporter, WritesTheRecordBeforeTheBox) {
  struct Unshowable : MessageSink {
    void show(const std::u16string&, const std::optional<std::u16string>&) override { throw outOfMemory(); }
  } unshowable;
  clsErrorLogging reporter(context.currentFault, unshowable);
  reporter.SendErrors_ToTxtFile(log("errors.txt"));
  EXPECT_THROW(reporter.ProcessErrors(), Fault) << "is the caller's";
  EXPECT_NE(folder.get("errors.txt"), "");
}

TEST(Context, WithoutAReporterLetsTheFaultTravelOn) {
  Context context;
  EXPECT_THROW(guarded(context, u"tag", [] { throw outOfMemory(); }), Fault);
  EXPECT_EQ(context.locationTag, u"tag");
  EXPECT_EQ(context.currentFault.number, outOfMemory().number);
}

TEST_F(Reporter, TakesAnyExceptionForAFault) {
  const auto reported = [&](auto exception) {
    guarded(context, u"", [&] { throw exception; });
    return shown.texts.back().substr(12);
  };
  reporter().ErrorDetailLevel(2);
  EXPECT_EQ(reported(Fault(4608, u"Value out of range")), u"\r\n\r\nError Description:Value out of range");
  EXPECT_EQ(reported(std::bad_alloc()), u"\r\n\r\nError Description:Out of memory");
  EXPECT_EQ(reported(std::runtime_error("no \xC3\xA4 here")), u"\r\n\r\nError Description:no \u00E4 here");
}

TEST(ErrorTable, TakesLineEndsAsColonsAndQuotesTwice) {
  EXPECT_EQ(escapedForTable(u"a\r\nb\rc\nd\r\n\r\n'\"\r"), u"a:b\rc\nd::''\"\"\r");
}

TEST(Clock, ReadsAsDateAndTime) {
  const std::u16string now = dateAndTime();
  ASSERT_EQ(now.size(), std::u16string_view(u"2026-11-21 14:22:33").size());
  EXPECT_EQ(now[4], u'-');
  EXPECT_EQ(now[10], u' ');
  EXPECT_EQ(now[16], u':');
}

}  // namespace
}  // namespace pluvo::errors
