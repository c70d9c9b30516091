#include "formats/docx/document_builder.h"
#include "sandbox.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace pluvo::cli {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(Report, EscapesWhatDocumentsAndNamesHold) {
  const Sandbox sandbox;
  sandbox.put("<b>&.txt", "x =HYPERLINK(\"u\")<script> y\n");
  sandbox.put("bad\xFF.txt", "none\n");
  sandbox.put("\uFF1Dwide.txt", "\uFF0Bx =HYPERLINK<script>\n");
  const std::string request = "replace -b =HYPERLINK -e <script> -t @safe -r . -n --report ";
  const std::string html = sandbox.beside("r.html");
  const std::string csv = sandbox.beside("r.csv");
  for (const std::string& name : {html, csv}) sandbox.run(request + name);
  EXPECT_THAT(sandbox.get(html), AllOf(HasSubstr("<del>=HYPERLINK(&quot;u&quot;)&lt;script&gt;</del>"),
                                       HasSubstr("<ins>@safe</ins>"), HasSubstr("./&lt;b&gt;&amp;.txt"),
                                       HasSubstr("./bad\xEF\xBF\xBD.txt")));
  EXPECT_THAT(sandbox.get(csv), HasSubstr(R"(,1,"x ","'=HYPERLINK(""u"")<script>","'@safe"," y",)"));
  EXPECT_THAT(sandbox.get(csv), HasSubstr("\"'\uFF0Bx \",\"'=HYPERLINK<script>\""));
  EXPECT_EQ(sandbox.run(request + "r.pdf").status, 2);
  EXPECT_THAT(sandbox.names(), ElementsAre("<b>&.txt", "bad\xFF.txt", "\uFF1Dwide.txt"));
}

TEST(Report, ReplacesReportsAndEmptyFilesAlone) {
  const Sandbox sandbox;
  sandbox.put("d.txt", "draft\n");
  sandbox.put("mine", "<!DOCTYPE html>\n");
  sandbox.put("empty", "");
  const std::string find = "find -b draft d.txt --report ";
  for (const std::string& type : {std::string(".html"), std::string(".csv"), std::string(".json")}) {
    const std::string made = "made" + type;
    EXPECT_EQ(sandbox.run(find + made).status, 0);
    EXPECT_EQ(sandbox.status(made).st_mode & 0777U, 0600U) << "it tells what documents hold";
    ASSERT_EQ(::chmod(sandbox.path(made).c_str(), 0640), 0);
    std::filesystem::create_symlink(made, sandbox.path("link" + type));
    std::filesystem::create_symlink("nowhere", sandbox.path("lost" + type));
    std::filesystem::copy_file(sandbox.path("mine"), sandbox.path("mine" + type));
    std::filesystem::copy_file(sandbox.path("empty"), sandbox.path("empty" + type));
    std::filesystem::create_directory(sandbox.path("folder" + type));
    const struct {
      std::string name;
      int status;
    } cases[] = {{"made", 0}, {"link", 0}, {"empty", 0}, {"mine", 2}, {"lost", 2}, {"folder", 2}};
    for (const auto& [name, status] : cases)
      EXPECT_EQ(sandbox.run(find + name + type).status, status) << name << type;
    EXPECT_EQ(sandbox.status(made).st_mode & 0777U, 0640U);
    EXPECT_TRUE(std::filesystem::is_symlink(sandbox.path("link" + type)));
    EXPECT_EQ(sandbox.get("mine" + type), sandbox.get("mine"));
    EXPECT_EQ(sandbox.run(find + "mine" + type + " --overwrite-report").status, 0);
    EXPECT_NE(sandbox.get("mine" + type), sandbox.get("mine"));
  }
  sandbox.put("d.csv", "draft\n");
  const std::string change = "replace -b draft -t final d.txt d.csv --output out --report d.csv";
  for (const char* const option : {"", " --overwrite-report"}) {
    EXPECT_EQ(sandbox.run(change + option).status, 2);
    EXPECT_FALSE(std::filesystem::exists(sandbox.path("out"))) << "nothing was done";
    EXPECT_EQ(sandbox.get("d.csv"), "draft\n");
  }
}

TEST(Report, TellsTemplatesByTheirContent) {
  const Sandbox sandbox;
  const auto file = [](const std::string& kind) {
    return docx::fileOf("draft",
                        {{"[Content_Types].xml",
                          "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
                          "<Default Extension=\"xml\" ContentType=\"wordprocessingml." +
                              kind + ".main+xml\"/></Types>"}});
  };
  sandbox.put("form.docx", file("template"));
  sandbox.put("letter.docx", file("document"));
  const std::string request = "replace -b draft -t final form.docx letter.docx --output ";
  const struct {
    const char* options;
    std::string Result::*stream;  ///< where it is told, or in the report
    std::string told, untold;
  } cases[] = {{"a", &Result::err, "form.docx: it is a template", "letter.docx: it is"},
               {"b --json", &Result::out, "\"template\":true", "\"template\":false"},
               {"c --report r.html", nullptr, "form.docx (template)", "letter.docx (template)"},
               {"d --report r.csv", nullptr, "\"template\"", "\"document\",\"template"}};
  for (const auto& [options, stream, told, untold] : cases) {
    const Result result = sandbox.run(request + options);
    const std::string text = stream != nullptr ? result.*stream : sandbox.get(wordsOf(options).back());
    EXPECT_THAT(text, AllOf(HasSubstr(told), ::testing::Not(HasSubstr(untold)))) << options;
  }
}

}  // namespace
}  // namespace pluvo::cli
