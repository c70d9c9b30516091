#include "formats/docx/document_builder.h"
#include "sandbox.h"
#include "storage/files/as_text.h"

#include <sys/stat.h>

namespace pluvo::cli {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// SECRET in its body, hidden there, and in its header.
std::string secretEverywhere() {
  const std::string body = docx::wml(
      "{[one SECRET][<vanish/>|a SECRET]<sectPr><headerReference type='default' r:id='rId1'/></sectPr>}");
  return files::textOf(docx::documentOf(body, {{"word/header1.xml", docx::headerOf(docx::run("SECRET"))},
                                               {"word/_rels/document.xml.rels",
                                                docx::relationships({{"header", "header1.xml"}})}})
                           .view);
}

const std::string kTold =
    "1 block in headers; the beginning also occurs in hidden text (1). Requests work there with --in "
    "headers; "
    "see to the rest in a word processor.";

TEST(NotReached, IsToldAndFailsAStrictRun) {
  const std::string line = "pluvo: d.docx: not reached: " + kTold + "\n";
  const std::string json = R"("elsewhere":{"headers":1},"unreached":{"hidden":1})";
  const struct {
    std::string arguments;
    int status;
    std::string out;  ///< among others
    std::string err;  ///< all of it
    std::string text = "one x";
  } cases[] = {
      {"find -b SECRET d.docx", 0, "d.docx:1: SECRET\n", line, "one SECRET"},
      {"replace -b SECRET -t x d.docx", 0, "d.docx: 1 block, 1 replaced\n", line},
      {"replace -b SECRET -t x d.docx --strict", 2, "1 replaced\n", line},
      {"replace -b SECRET -t x d.docx -q", 0, "", ""},
      {"replace -b SECRET -t x d.docx -q --strict", 2, "", line},
      {"replace -b SECRET -t x d.docx -n", 0, "1 would be replaced\n", line, "one SECRET"},
      {"replace -b SECRET -t x d.docx --json", 0, R"("encoding":null,)" + json + "}\n", ""},
      {"replace -b SECRET -t x d.docx --json --strict", 2,
       R"("left_out":0,)" + json + R"(,"not_reached":1}})", line},
      {"replace -b SECRET -t x -r .", 0, "./d.docx: 1 block, 1 replaced\n",
       "pluvo: 2 documents: 2 blocks, 2 replaced, 2 documents changed\npluvo: Not reached in 1 document: " +
           std::string(kTold).insert(kTold.find(" Requests"), " To see in which, add --report FILE.") + "\n"},
      {"replace -b none -t x d.docx --strict", 1, "", "pluvo: d.docx: 0 blocks\n", "one SECRET"},
      {"replace -b SECRET -t x d.txt --strict", 0, "1 replaced\n", "", "one SECRET"}};
  for (const auto& each : cases) {
    const Sandbox sandbox;
    sandbox.put("d.docx", secretEverywhere());
    sandbox.put("d.txt", "a SECRET\n");
    const Result result = sandbox.run(each.arguments);
    EXPECT_EQ(result.status, each.status) << each.arguments;
    EXPECT_THAT(result.out, HasSubstr(each.out)) << each.arguments;
    EXPECT_EQ(result.err, each.err) << each.arguments;
    EXPECT_THAT(docx::bodyOf(files::bytesOf(sandbox.get("d.docx"))), HasSubstr(each.text)) << each.arguments;
  }
}

TEST(NotReached, IsToldOfAllRequestsInReportsAndWhereADocumentFails) {
  const Sandbox sandbox;
  sandbox.put("d.docx", secretEverywhere());
  sandbox.run("save two.toml replace -b SECRET -t x");
  sandbox.run("save two.toml delete -b ECR");
  EXPECT_THAT(sandbox.run("save two.toml delete -b E --strict").err, HasSubstr("--strict is not kept"));
  ASSERT_EQ(::chmod(sandbox.path("d.docx").c_str(), 0400), 0);
  const std::string told = R"("elsewhere":{"headers":2},"unreached":{"hidden":2})";
  const Result failed = sandbox.run("run two.toml d.docx --json --report r.json");
  EXPECT_EQ(failed.status, 2);
  EXPECT_THAT(failed.out, AllOf(HasSubstr("\"code\":\"read-only\""), HasSubstr(told)));
  EXPECT_THAT(sandbox.get("r.json"), HasSubstr(told));
  for (const char* const report : {"r.html", "r.csv"})
    EXPECT_EQ(sandbox.run("run two.toml d.docx -n --report " + std::string(report)).status, 0);
  EXPECT_THAT(sandbox.get("r.html"),
              AllOf(HasSubstr("<th class=\"n\">Not reached</th>"),
                    HasSubstr("data-name=\"Not reached\">4</td>"), HasSubstr("<h2>Not reached</h2>"),
                    HasSubstr(">2 blocks in headers</td>"), HasSubstr(">hidden text (2)</td>")));
  EXPECT_THAT(
      sandbox.get("r.csv"),
      AllOf(HasSubstr(",encoding,not reached,not looked into,place\r\n"),
            HasSubstr(",\"2 blocks in headers; the beginning also occurs in hidden text (2)\",\"\",\r\n")));
}

}  // namespace
}  // namespace pluvo::cli
