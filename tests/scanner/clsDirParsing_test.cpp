#include "scanner/clsDirParsing.h"

#include "base/names.h"
#include "base/utf.h"
#include "errors/reports.h"
#include "scanner/mask.h"
#include "scanner/scripted_folders.h"
#include "storage/files/scratch.h"

#if __has_include("files/file_system.h")
#include "files/file_system.h"
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace pluvo::scanner {
namespace {

using Paths = std::vector<std::string>;

struct Scan {
  std::string root = "/r/";
  std::string masks = "*.txt";
  bool subFolders = true;
  std::int16_t depth = 32000;
  std::string separator = "/";
};

std::string joined(const std::vector<std::u16string>& paths) {
  std::string text;
  for (const std::u16string& path : paths) text += (text.empty() ? "" : " ") + base::nameBytes(path);
  return text;
}

std::string scan(Folders& folders, const Scan& asked) {
  errors::WatchedContext watched;
  clsDirParsing scanner(watched.context, folders, base::nameText(asked.separator));
  scanner.RootDirectory(base::nameText(asked.root));
  scanner.MasksCSstr(base::nameText(asked.masks));
  EXPECT_EQ(base::nameBytes(scanner.MasksCSstr()), asked.masks);
  scanner.DirectoriesDeep(asked.depth);
  scanner.ProcessSubDirectories(asked.subFolders);
  scanner.ProcessItems();
  EXPECT_TRUE(watched.reports.empty());
  return joined(scanner.ProcessedItems());
}

TEST(Mask, ReadsAsOnWindows) {
  const struct {
    const char* mask;
    Paths taken;
    Paths left;
  } cases[] = {{"*.doc", {"a.doc", "A.DOC", ".doc", "a.b.doc"}, {"a.docx", "adoc", "a.doc.txt", "doc"}},
               {"*.*", {"a.doc", "a", ".a", "a.b.c"}, {}},
               {"*", {"a.doc", "a", ".a"}, {}},
               {"", {"a.doc", "a", ".a"}, {}},
               {"*.", {"a", "abc", "a."}, {"a.b", ".a", "a.b.c"}},
               {"a.*", {"a", "a.b", "a.b.c"}, {"ab.c", "ab"}},
               {"a.?", {"a", "a.b"}, {"a.bc", "ab"}},
               {"a.", {"a", "a."}, {"a.b", "ab"}},
               {"?.txt", {"a.txt", ".txt"}, {"ab.txt"}},
               {"a??.txt", {"a.txt", "ab.txt", "abc.txt"}, {"abcd.txt", "b.txt"}},
               {"a??", {"a", "ab", "abc"}, {"abcd", "a.b"}},
               {"*a*b*c", {"abc", "xaxbxc", "abcabc", "ababc"}, {"abcd", "acb"}},
               {"letter.txt", {"letter.txt", "Letter.TXT"}, {"letter.txt2", "aletter.txt"}},
               {"\xC3\x89t\xC3\xA9.*", {"\xC3\xA9T\xC3\x89.txt"}, {"ete.txt"}},
               {"[a].(b)", {"[a].(b)"}, {"a.b"}}};
  for (const auto& [text, taken, left] : cases) {
    const Mask mask(base::nameText(text));
    for (const std::string& name : taken)
      EXPECT_TRUE(mask.matches(base::nameText(name))) << text << ' ' << name;
    for (const std::string& name : left)
      EXPECT_FALSE(mask.matches(base::nameText(name))) << text << ' ' << name;
  }
}

TEST(Mask, IsNotSlowedDownByStars) {
  const std::u16string name(20'000, u'a');
  EXPECT_FALSE(Mask(u"*a*a*a*a*a*a*a*a*b").matches(name));
}

TEST(clsDirParsing, ListsFoldersInWalkOrderAndMasksInTheirs) {
  ScriptedFolders folders({"/r/b.txt", "/r/a.txt", "/r/a.doc", "/r/B/x.txt", "/r/B/b/y.txt", "/r/B/b/c/z.txt",
                           "/r/a/w.txt", "/r/a/w.doc", "/r/.git/g.txt", "/r/.hidden.txt", "/r/\xFF.txt"});
  const struct {
    Scan scan;
    const char* found;
  } cases[] = {
      {{.subFolders = false}, "/r/.hidden.txt /r/a.txt /r/b.txt /r/\xFF.txt"},
      {{}, "/r/.hidden.txt /r/a.txt /r/b.txt /r/\xFF.txt /r/B/x.txt /r/B/b/y.txt /r/B/b/c/z.txt /r/a/w.txt"},
      {{.masks = "*.doc,*.txt", .depth = 2},
       "/r/a.doc /r/.hidden.txt /r/a.txt /r/b.txt /r/\xFF.txt /r/B/x.txt /r/B/b/y.txt /r/a/w.doc /r/a/w.txt"},
      // The folders right below are found whatever the depth.
      {{.masks = "w.*,x.*,y.*", .depth = 1}, "/r/B/x.txt /r/a/w.doc /r/a/w.txt"},
      {{.masks = "w.*,x.*,y.*", .depth = -32768}, "/r/B/x.txt /r/a/w.doc /r/a/w.txt"},
      // Two masks, two mentions; a trailing comma is one more mask, which takes everything.
      {{.root = "/r/a/", .masks = "*.doc,w*"}, "/r/a/w.doc /r/a/w.doc /r/a/w.txt"},
      {{.root = "/r/a/", .masks = "*.doc,"}, "/r/a/w.doc /r/a/w.doc /r/a/w.txt"},
      // Nothing is one empty entry.
      {{.root = "/r/B/b/c/", .masks = "*.rtf"}, ""},
      {{.root = "/missing/"}, ""},
      // Without a separator after the root, patterns are about its name, and no such file is there.
      {{.root = "/r/a"}, "/r/aa.txt"}};
  for (const auto& [asked, found] : cases) {
    EXPECT_EQ(scan(folders, asked), found) << asked.root << ' ' << asked.masks << ' ' << asked.depth;
  }
}

TEST(clsDirParsing, EntersAFolderOnceThroughWhateverLinks) {
  ScriptedFolders folders({"/r/a/f.txt", "/r/a/b/g.txt", "/r/z/h.txt", "/r/z/y/i.txt", "/r/z/y/x/j.txt"});
  folders.link("/r/a/b/up", "/r/a");
  folders.link("/r/a/root", "/r");
  folders.link("/r/c", "/r/a/b");
  EXPECT_EQ(scan(folders, {}), "/r/a/f.txt /r/a/b/g.txt /r/z/h.txt /r/z/y/i.txt /r/z/y/x/j.txt");

  // A link at the last level cuts nothing off from the folder it leads to.
  folders.link("/r/a/z", "/r/z");
  EXPECT_EQ(scan(folders, {.depth = 2}), "/r/a/f.txt /r/a/b/g.txt /r/a/z/h.txt /r/z/y/i.txt");
}

TEST(clsDirParsing, KeepsItsOddities) {
  ScriptedFolders folders({"/r/a/b/c/d.txt", "/r/.x/e.txt", "/r/h/f.txt"});
  folders.hide("/r/h");
  errors::WatchedContext watched;
  clsDirParsing scanner(watched.context, folders, u"/");
  const std::vector<std::u16string> nothing = {u""};
  EXPECT_TRUE(scanner.GetDirs().empty());
  EXPECT_EQ(scanner.DirectoriesDeep(), 32000);
  scanner.RootDirectory(u"/r/");
  scanner.ProcessItems();
  EXPECT_EQ(scanner.ProcessedItems(), nothing) << "no masks were set";
  scanner.MasksCSstr(u"*.txt");
  scanner.ProcessSubDirectories(true);
  scanner.ProcessItems();
  EXPECT_EQ(joined(scanner.ProcessedItems()), "/r/a/b/c/d.txt /r/h/f.txt") << "as deep as can be";
  scanner.ItemsToProcess(1);
  scanner.ProcessItems();
  EXPECT_EQ(scanner.ProcessedItems(), nothing);
  EXPECT_EQ(scanner.GetDirs(), nothing);

  std::int16_t level = 0;
  std::int16_t depth = 2;
  FolderCollection walked;
  scanner.GetSubdirs(u"/r/", walked, level, depth);
  EXPECT_EQ(joined(walked.paths()), "/r/a/ /r/a/b/ /r/h/");
  EXPECT_EQ(watched.context.locationTag, u"cdpar:14");
  FolderCollection walkedOld;
  scanner.GetSubdirsOld2(u"/r/", walkedOld, level, depth);
  EXPECT_EQ(joined(walkedOld.paths()), "/r/.x/ /r/a/ /r/a/b/ /r/a/b/c/");
  EXPECT_EQ(watched.context.locationTag, u"cdpar:15");
}

TEST(clsDirParsing, ReportsAFaultAndGoesOn) {
  struct Failing : ScriptedFolders {
    using ScriptedFolders::ScriptedFolders;
    std::error_code forEachEntry(const std::u16string& folder, const Visit& visit) override {
      if (folder == u"/r/a/") throw errors::outOfMemory();
      return ScriptedFolders::forEachEntry(folder, visit);
    }
    std::u16string resolved(const std::u16string& path) override {
      if (path == u"/s/") throw errors::outOfMemory();
      return ScriptedFolders::resolved(path);
    }
  } folders({"/r/a/f.txt", "/r/b/g.txt", "/r/c.txt"});
  errors::WatchedContext watched;
  clsDirParsing scanner(watched.context, folders, u"/");
  scanner.RootDirectory(u"/r/");
  scanner.MasksCSstr(u"*.txt");
  scanner.ProcessSubDirectories(true);
  scanner.ProcessItems();
  EXPECT_EQ(watched.reports, (Paths{"7 cdpar:14", "7 cdpar:14"})) << "in the walk, and listing its files";
  EXPECT_EQ(joined(scanner.ProcessedItems()), "/r/c.txt");
  scanner.RootDirectory(u"/s/");
  scanner.ProcessItems();
  EXPECT_EQ(watched.reports.back(), "7 cdpar:13") << "before the walk";
}

TEST(clsDirParsing, ScansTheMachinesFolders) {
  const files::Scratch scratch;
  const std::string odd = std::string("s/caf\xC3\xA9") + files::kOddLetter;
  for (const std::string& folder : {std::string("s"), std::string("s/t"), std::string(".d"), odd})
    std::filesystem::create_directory(scratch.at(folder));
  for (const char* file : {"b.txt", "a.TXT", "lost.txt", "s/t/c.txt", ".d/d.txt", "s/no.doc"})
    scratch.put(file, "x");
  scratch.put(odd + "/" + files::kOddLetter + ".txt", "x");
  std::string linked;
#ifndef _WIN32
  std::filesystem::create_directory_symlink(".d", scratch.at("l"));
  linked = "l/d.txt ";
  std::filesystem::remove(scratch.at("lost.txt"));
  std::filesystem::create_directory_symlink("..", scratch.at("s/up"));
  std::filesystem::create_symlink("nowhere", scratch.at("lost.txt"));
#endif
  const auto folders = machineFolders();
  const std::string root = scratch.path("");
  const std::string separator(1, static_cast<char>(std::filesystem::path::preferred_separator));
  std::string found = scan(*folders, {.root = root, .separator = separator});
  for (std::size_t at = found.find(root); at != std::string::npos; at = found.find(root))
    found.erase(at, root.size());
  std::ranges::replace(found, separator.front(), '/');
  EXPECT_EQ(found, "a.TXT b.txt lost.txt " + linked + odd + "/" + files::kOddLetter + ".txt s/t/c.txt");

  std::filesystem::permissions(scratch.at("s"), std::filesystem::perms::none);
  folders->forEachEntry(base::nameText(scratch.path("missing")),
                        [](const Entry& entry) { ADD_FAILURE() << base::utf8(entry.name); });
  std::filesystem::permissions(scratch.at("s"), std::filesystem::perms::owner_all);
}

#if __has_include("files/file_system.h")
TEST(clsDirParsing, KnowsFilesUnderSeveralNames) {
  const files::Scratch scratch;
  scratch.put("a.txt", "x");
  scratch.put("c.txt", "x");
  std::filesystem::create_hard_link(scratch.path("a.txt"), scratch.path("b.txt"));
  std::filesystem::create_symlink("a.txt", scratch.path("link.txt"));
  const auto folders = machineFolders();
  errors::WatchedContext watched;
  clsDirParsing scanner(watched.context, *folders, u"/");
  scanner.RootDirectory(base::nameText(scratch.path("")));
  scanner.MasksCSstr(u"");
  scanner.ProcessItems();
  const auto& known = scanner.identities();
  ASSERT_EQ(known.size(), 4U);
  const files::Stamp stamp = files::machineFileSystem().statusAt(scratch.path("a.txt")).stamp;
  EXPECT_EQ(known[0], (FileIdentity{stamp.device, stamp.inode}));
  EXPECT_EQ(known[1], known[0]);
  EXPECT_TRUE(known[2]);
  EXPECT_NE(known[2], known[0]);
  EXPECT_EQ(known[3], std::nullopt) << "where a link leads is not known from its name";
}
#endif

}  // namespace
}  // namespace pluvo::scanner
