#include "formats/edited_files.h"
#include "formats/html/html_document.h"

namespace pluvo::formats::html {
namespace {

TEST(HtmlFormat, IsEditedBySplices) {
  const std::vector<SpliceCase> cases = {
      // Blanks that would fold are protected, those that would wake up go.
      {"<p>a b c</p>", u"b", u"", "<p>a <span style='mso-spacerun:yes'>&nbsp;</span>c</p>"},
      {"<p>a\n  b</p>", u"a", u"", "<p><span style='mso-spacerun:yes'>&nbsp;</span>b</p>"},
      {"<p>a\n  b</p>", u" ", u"x", "<p>axb</p>"},
      {"<p>a b</p>", u"b", u" ", "<p>a <span style='mso-spacerun:yes'>&nbsp;</span></p>"},
      {"<p>a<br>b</p>", u"b", u" c", "<p>a<br><span style='mso-spacerun:yes'>&nbsp;</span>c</p>"},
      {"<pre>\na b</pre>", u"a ", u"\r ", "<pre>\n\n b</pre>"},
      {"<pre>a\nb</pre>", u"b", u"", "<pre>a\n\n</pre>"},
      // Any text; raw only where the encoding is declared.
      {"<p>x</p>", u"x", u"<&>\u00E9\u00A0\t\v\f\U0001F600",
       "<p>&lt;&amp;&gt;&#233;&nbsp;<span style='mso-tab-count:1'>&nbsp;&nbsp;&nbsp; </span><br>"
       "<br clear=all style='mso-special-character:line-break;page-break-before:always'>&#128512;</p>"},
      {"<meta charset=windows-1251><p>x</p>", u"x", u"\u0416\u4E00",
       "<meta charset=windows-1251><p>\xC6&#19968;</p>"},
      {"<meta charset=gbk><p>x</p>", u"x", u"\u4E00", "<meta charset=gbk><p>\xD2\xBB</p>"},
      {"<meta charset=utf-8><p>\xE2x\x82\xAC</p>", u"x", u"",
       "<meta charset=utf-8><p>\xE2\xEF\xBF\xBD\xEF\xBF\xBD</p>"},
      // Without the byte that showed what it was, the page says so.
      {"<!doctype html>\n<p>\xC3\xA9 x\xE9</p>", u"\u00E9", u"",
       "<!doctype html><meta charset=windows-1252>\n<p>\xC3\xA9 x</p>"},
      {"\xE9\xC3\xA9", u"\u00E9", u"e", "<meta charset=windows-1252>e\xC3\xA9"},
      {"<p>AT&T; amp</p>", u"T;", u"lt;", "<p>AT&amp;lt; amp</p>"},
      {"<p>a < b</p>", u" b", u"b", "<p>a &lt;b</p>"},
      {"<!--[if supportFields]><span style='mso-element:field-begin'></span>X<span "
       "style='mso-element:field-end'></span><![endif]-->",
       u"X", u"a-->",
       "<!--[if supportFields]><span style='mso-element:field-begin'></span>a&#45;&#45;&gt;<span "
       "style='mso-element:field-end'></span><![endif]-->"},
      // Elements that lost all their text go, those with a name or an id stay.
      {"<p>a<b><i>b</i></b>c</p>", u"b", u"", "<p>ac</p>"},
      {"<p>a<a name=n>b</a><!-- c -->d</p>", u"b", u"", "<p>a<a name=n></a><!-- c -->d</p>"},
      // Paragraphs are divided, joined and emptied.
      {"<p id=i class=c>a<b id=j>bc</b></p>", u"c", u"\rc",
       "<p id=i class=c>a<b id=j>b</b></p><p class=c><b>c</b></p>"},
      {"<ul><li>a b</ul>", u" ", u"\r", "<ul><li>a</li><li>b</ul>"},
      {"<div class=c>a b</div>", u" ", u"\r", "<div class=c>a</div><div class=c>b</div>"},
      {"<td>x<div>y</div>a b", u" ", u"\r", "<td>x<div>y</div>a<div></div>b"},
      {"<p>a</p> <!-- c --> <h1>b</h1>", u"\r", u"", " <!-- c --> <h1>ab</h1>"},
      {"z<p>a</p>b", u"a\r", u"", "z<div></div>b"},
      {"<ul><li><p>a</p></li><li>b</li></ul>", u"\r", u"", "<ul><li>ab</li></ul>"},
      {"<p><i>a<p>b</i>c", u"\r", u"", "<i><p>ab</i>c"},
      {"<pre>a b</pre><p>c</p>", u"\r", u"", "<p>a bc</p>"},
      {"<p>x</p>a<p>b</p>", u"a", u"", "<p>x</p><p style=\"margin:0\"></p><p>b</p>"},
      {"<table><tr><td>a<td>b</table>c", u"a", u"", "<table><tr><td><td>b</table>c"},
      {"<style>p{color:red}</style>a", u"a", u"\ra",
       "<style>p{color:red}</style><p style=\"margin:0\"></p>a"},
      // What goes as a whole.
      {"a<table><tr><td>b</table>c", u"\rb\a\ac", u"d", "ad"},
      {"<p>a<a style='mso-footnote-id:ftn1' href='#_ftn1'><span "
       "style='mso-special-character:footnote'></span>"
       "</a>b</p><div style='mso-element:footnote-list'><div style='mso-element:footnote' "
       "id=ftn1><p>n</p></div>"
       "</div>",
       u"\u0002", u"", "<p>ab</p><div style='mso-element:footnote-list'></div>"},
      // Highlight: spans of nothing else are never nested; a class or an element that has one is answered.
      {"<p>a<b>b</b>c</p>", u"abc", u"7",
       "<p><span style=\"background:yellow;mso-highlight:yellow\">a</span><b><span "
       "style=\"background:yellow;mso-highlight:yellow\">b</span></b><span "
       "style=\"background:yellow;mso-highlight:yellow\">c</span></p>"},
      {"<p><span style=\"background:red;mso-highlight:red\">abc</span></p>", u"b", u"7",
       "<p><span style=\"background:red;mso-highlight:red\">a</span><span "
       "style=\"background:yellow;mso-highlight:yellow\">b</span><span "
       "style=\"background:red;mso-highlight:red\">c</span></p>"},
      {"<p><span style=\"background:yellow;mso-highlight:yellow\">a</span>b</p>", u"b", u"7",
       "<p><span style=\"background:yellow;mso-highlight:yellow\">ab</span></p>"},
      {"<p><mark>ab</mark></p>", u"a", u"0", "<p>a<mark>b</mark></p>"},
      {"<p><span lang=en style='color:red;background:aqua'>a</span></p>", u"a", u"0",
       "<p><span lang=en style='color:red'>a</span></p>"},
      {"<style>.y{background:yellow}</style><p><i class=y>a</i>", u"a", u"0",
       "<style>.y{background:yellow}</style><p><i "
       "style=\"background:none;mso-highlight:none\" class=y>a</i>"},
      {"<style>span{display:none}</style><p>a", u"a", u"7",
       "<style>span{display:none}</style><p><span "
       "style=\"background:yellow;mso-highlight:yellow;display:inline;mso-hide:none\">a</span>"},
  };
  expectSplices(HtmlFormat(), "", "", cases);
}

/// Whatever is done to pages that are damaged, or have what few pages have.
TEST(HtmlFormat, TakesRandomEditsOfOddPages) {
  const auto mark = [](std::string kind) { return "<span style='mso-element:field-" + kind + "'></span>"; };
  const std::string code = "<!--[if supportFields]>";
  const std::string end = "<![endif]-->";
  const std::string note =
      "<div style='mso-element:footnote' id=f><p>" + noteReference("f", "g") + " n o</p></div>";
  const std::string pages[] = {
      // The bytes end in something: text goes in front of what nobody sees.
      "<p>abc</p><!-- x",
      "<p>abc</p>d e<scr",
      "abc <script>x",
      "<p>abc<textarea>d",
      "abc<xmp>d e",
      "a<table><tr><td>b c<script>",
      "a<!--[if mso]>b<![endif]",
      "<p>a<b><span style='mso-element:field-end'>b c</b>d</p>",
      // Tables with a caption or text between cells, and what they were the end of.
      "<table><caption>cap</caption><tr><td>a<td>b</table>c",
      "x<table><tr><td>a</td></tr><caption>cap</caption><tr><td>b</table>c",
      "<p>x</p><table><tr><td>a</td>text<td>b</td></table>c",
      "<p>x</p><table>text<tr><td>a</td><td>b</td></table>c",
      "<table><td>a<tr><p><p>b c<td>d</table>e",
      "<table><tr><td>a<table><tr><td>b</table></table>z",
      "<table><tr><td><p>a<table><tr><td>b</table></table>z",
      "<p>a<p>b</p>c",
      "<table><tr><td>x y<table><caption>c d</caption><tr><td>a b<td>c</table>z</table>w",
      // Fields that do not end where they should.
      code + mark("begin") + "X" + end + "<p>b</p><table><tr><td>c" + code + mark("end") + end + "</table>d",
      "<table><tr><td>" + code + mark("begin") + "X" + end + "b</table>c" + mark("separator") + "d" +
          mark("end"),
      "<p>" + code + mark("begin") + "X" + mark("separator") + end + "b c</p><p>d" + mark("end") + "e</p>",
      // Revisions.
      "<p>x y</p><del><p>a b</p><p>c</p></del><p>y z</p>",
      "<del><ul><li>a b<li>c</ul></del>y z",
      "<p>a<del>bcd</del>e</p><p><ins>b<del>c d</del></ins></p><ul><li><del>f g</del><li>h</ul>",
      // Texts of their own.
      "<p>a" + noteReference("f", "h") + "b</p><div style='mso-element:footnote-list'>" + note + "</div>c",
      "<div style='mso-element:header' id=h1><p>a b</div><p>c<div style='mso-element:footer'>d</div>",
  };
  std::mt19937 random(1);
  for (const std::string& page : pages) {
    SCOPED_TRACE(page);
    for (int program = 0; program < 300; ++program) {
      OpenedFile opened = open(page);
      ASSERT_EQ(notation::damageOf(opened.model), "");
      editAtRandom(opened, random, 1 + program % 3);
      try {
        savedAndTheSame(HtmlFormat(), opened);
        opened.document.saved();
        savedAndTheSame(HtmlFormat(), opened);
      } catch (const errors::DocumentError& error) {
        EXPECT_EQ(error.problem(), errors::Problem::encoding) << error.what();
      }
      ASSERT_FALSE(HasFailure());
    }
  }
}

TEST(HtmlCorpus, keepsAllOtherBytes) {
  expectCorpusKept(HtmlFormat(), "html", {{{0, 8}, {7, 29}, {1, 250}, {0, 120}, {8, 21}, {21, 42}}});
}

TEST(HtmlCorpus, takesRandomEditsThatAreReadBack) { expectRandomEditsReadBack(HtmlFormat(), "html"); }

}  // namespace
}  // namespace pluvo::formats::html
