#include "formats/docx/document_builder.h"
#include "sandbox.h"
#include "storage/files/as_text.h"

#include <cstdlib>

namespace pluvo::cli {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

const std::string kNamespace = " xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"";

/// SECRET in its body, in the second of its headers, and in the second of its footnotes.
std::string document(const std::string& inHeader = docx::run("a SECRET")) {
  const auto note = [](const char* id, const char* text) {
    return "<w:footnote w:id=\"" + std::string(id) + "\">" + docx::p(docx::run(text)) + "</w:footnote>";
  };
  const std::string body = docx::wml(
      "{[one SECRET]<r><footnoteReference w:id='1'/></r>}{[two]<r><footnoteReference w:id='2'/></r>"
      "<sectPr><headerReference type='first' r:id='rId1'/><headerReference type='default' r:id='rId2'/>"
      "</sectPr>}");
  return files::textOf(
      docx::documentOf(
          body, {{"word/header1.xml", docx::headerOf(docx::run("first"))},
                 {"word/header2.xml", docx::headerOf(inHeader)},
                 {"word/footnotes.xml", "<w:footnotes" + kNamespace + ">" + note("1", "note") +
                                            note("2", "more SECRET") + "</w:footnotes>"},
                 {"word/_rels/document.xml.rels", docx::relationships({{"header", "header1.xml"},
                                                                       {"header", "header2.xml"},
                                                                       {"footnotes", "footnotes.xml"}})}})
          .view);
}

/// Which of body, header and footnotes still have SECRET: "bhf".
std::string secretsOf(const std::string& file) {
  const base::Bytes bytes = files::bytesOf(file);
  std::string parts;
  for (const char* const name : {"word/document.xml", "word/header2.xml", "word/footnotes.xml"})
    parts += docx::part(bytes, name).find("SECRET") != std::string::npos ? name[5] : '-';
  return parts;
}

TEST(Places, AreWhereARequestWorksAndAreTold) {
  const struct {
    std::string arguments;
    std::string out;    ///< among others
    std::string err;    ///< the same
    std::string after;  ///< as secretsOf has it
    int status = 0;
  } cases[] = {
      {"find -b SECRET --in all d.docx",
       "d.docx:1: SECRET\nd.docx:header 2:1: SECRET\nd.docx:footnote 2:1: SECRET\n", "", "dhf"},
      {"find -b SECRET --in headers,notes d.docx", "d.docx:header 2:1: SECRET\nd.docx:footnote 2:1: SECRET\n",
       "pluvo: d.docx: not reached: 1 block in main text. Requests work there with --in main.\n", "dhf"},
      {"replace -b SECRET -t x --in footnotes d.docx -n",
       "d.docx:footnote 2:1:\n  - more [-SECRET-]\n  + more {+x+}\nd.docx: 1 block (1 in footnotes), 1 would",
       "1 block in main text and 1 in headers", "dhf"},
      {"replace -b SECRET -t x d.docx", "d.docx: 1 block, 1 replaced\n", "--in headers,footnotes.\n", "-hf"},
      {"replace -b SECRET -t x --in all d.docx --strict",
       "d.docx: 3 blocks (1 in main text, 1 in headers, 1 in footnotes), 3 replaced\n", "", "---"},
      {"replace -b SECRET -t x --in headers d.docx --strict", "1 replaced\n", "not reached", "d-f", 2},
      {"delete -b two --in all d.docx", "1 deleted\n", "", "dhf"},
      {"replace -b SECRET -t x --in notes,main d.docx --json",
       R"("saved":true,"places":{"main":{"found":1,"operated":1,"skipped":0},"footnotes":{"found":1,)"
       R"("operated":1,"skipped":0,"stories":{"footnote 2":1}}})",
       "", "-h-"},
      {"run two.toml d.docx", ": 2 blocks (1 in headers, 1 in footnotes), 2 changed\n",
       "2 blocks in main text. Requests work there with in = \"main\".\n", "d--"},
      {"find -b SECRET --in boxes d.docx d.txt", "",
       "Not reached in 2 documents: 2 blocks in main text, 1 in", "dhf", 1}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.arguments);
    const Sandbox sandbox;
    sandbox.put("d.docx", document());
    sandbox.put("d.txt", "SECRET\n");
    sandbox.run("save two.toml replace -b SECRET -t x --in headers");
    sandbox.run("save two.toml replace -b SECRET -t x --in footnotes");
    const Result result = sandbox.run(each.arguments);
    EXPECT_EQ(result.status, each.status);
    EXPECT_THAT(result.out, HasSubstr(each.out));
    EXPECT_TRUE(each.err.empty() ? result.err.empty() : result.err.find(each.err) != std::string::npos)
        << result.err;
    EXPECT_EQ(secretsOf(sandbox.get("d.docx")), each.after);
  }
}

TEST(Places, StandInReportsQuestionsAndRefusals) {
  ::unsetenv("TERM");
  const Sandbox sandbox;
  const std::string replace = "replace -b SECRET -t x --in headers,footnotes d.docx ";
  sandbox.put("d.docx", document());
  for (const char* const report : {"r.html", "r.csv", "r.json"})
    sandbox.run(replace + "-n --report " + std::string(report));
  EXPECT_THAT(sandbox.get("r.html"),
              AllOf(HasSubstr("<p class=\"soft\">Header 2, paragraph 1</p>"),
                    HasSubstr("2 blocks (1 in headers, 1 in footnotes)</span>"),
                    HasSubstr("<tr><td>Footnotes</td><td class=\"n\" data-name=\"Found\">1</td>")));
  EXPECT_THAT(sandbox.get("r.csv"), AllOf(HasSubstr(",\"footnote 2\"\r\n"),
                                          HasSubstr("\"place\",\"d.docx\",,1,1,0,,,,,,,,,,\"headers\"\r\n")));
  EXPECT_THAT(sandbox.get("r.json"), HasSubstr(R"("place":"header 2","paragraph":1)"));

  sandbox.put("d.docx", document(docx::wml("<sdt><sdtPr><lock val='contentLocked'/></sdtPr><sdtContent>"
                                           "[SECRET]</sdtContent></sdt>")));
  EXPECT_THAT(sandbox.run(replace).err, HasSubstr("d.docx: refused: In header 2: "));
  EXPECT_EQ(secretsOf(sandbox.get("d.docx")), "dhf");
  if (!Sandbox::hasTerminals()) GTEST_SKIP() << "no terminals here";
  sandbox.put("d.docx", document());
  const Result asked = sandbox.runAtTerminal(wordsOf(replace + "--confirm"), "n\na\n");
  EXPECT_THAT(asked.err, AllOf(HasSubstr("d.docx:header 2:1:\r\n  a [SECRET]\r\n"),
                               HasSubstr("d.docx:footnote 2:1:\r\n  more [SECRET]\r\n")));
  EXPECT_EQ(secretsOf(sandbox.get("d.docx")), "dh-");
  sandbox.runAtTerminal(wordsOf("replace -b SECRET -t x --in all d.docx --confirm"), "y\nq\n");
  EXPECT_EQ(secretsOf(sandbox.get("d.docx")), "-h-") << "a stop ends all stories";
}

/// Of versions of a box that differ, the one that holds the block is changed, though its beginning stands in
/// both.
TEST(Places, OfTwoVersionsOneMayHoldTheBlock) {
  const auto box = [](const std::string& text) {
    return "<pict><shape><txbxContent>{[" + text + "]}</txbxContent></shape></pict>";
  };
  const Sandbox sandbox;
  for (const auto& [other, status, said] : {std::tuple("FROM x", 0, "1 block (1 in text boxes), 1 replaced"),
                                            std::tuple("or FROM a TO", 2, "")}) {
    const std::string body = docx::wml("{<r><A><mc:Choice Requires='wps'>" + box("FROM a TO b") +
                                       "</mc:Choice><mc:Fallback>" + box(other) + "</mc:Fallback></A></r>}");
    sandbox.put("d.docx", files::textOf(docx::documentOf(body).view));
    const Result result = sandbox.run("replace -b FROM -e TO --on begin -t x --in boxes d.docx");
    EXPECT_EQ(result.status, status) << result.err;
    EXPECT_THAT(result.out, HasSubstr(said));
  }
}

}  // namespace
}  // namespace pluvo::cli
