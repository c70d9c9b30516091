// The limit program: what any program that edits these files has to do at the least, and nothing else. Its
// time is the yardstick the benchmarks divide by.
//
//   limit docx-find FILE TEXT          read the archive, inflate the main part, gather its text, search it
//   limit docx FILE OUT TEXT LEVEL     the same, then deflate the part again, copy the rest raw, write, flush
//   limit docx-once FILE OUT TEXT LEVEL the same with one flush, the file's; the folder is not flushed
//   limit text-find FILE TEXT          map the file, search it
//   limit text FILE OUT TEXT           the same, then write it out and flush
//
// Every form prints how often TEXT stands in the text, so that the search cannot be optimised away.

#include "docx.h"
#include "io.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

long countOf(std::string_view text, std::string_view needle) {
  long found = 0;
  const char* at = text.data();
  const char* const end = at + text.size();
  while ((at = static_cast<const char*>(
              memmem(at, static_cast<std::size_t>(end - at), needle.data(), needle.size()))) != nullptr) {
    ++found;
    at += needle.size();
  }
  return found;
}

int run(int argc, char** argv) {
  const std::string_view mode = argc > 1 ? argv[1] : "";
  if (mode == "docx-find" && argc == 4) {
    const limit::Mapped file(argv[2]);
    const limit::MainPart part(file.bytes());
    std::printf("%ld\n", countOf(limit::GatheredText(part.xml()).text(), argv[3]));
    return 0;
  }
  if ((mode == "docx" || mode == "docx-once") && argc == 6) {
    const limit::Mapped file(argv[2]);
    const limit::MainPart part(file.bytes());
    std::printf("%ld\n", countOf(limit::GatheredText(part.xml()).text(), argv[4]));
    limit::Written out(argv[3]);
    part.rewrite(file.bytes(), std::atoi(argv[5]), out);
    out.flush(mode == "docx");
    return 0;
  }
  if (mode == "text-find" && argc == 4) {
    const limit::Mapped file(argv[2]);
    std::printf("%ld\n", countOf(file.bytes(), argv[3]));
    return 0;
  }
  if (mode == "text" && argc == 5) {
    const limit::Mapped file(argv[2]);
    std::printf("%ld\n", countOf(file.bytes(), argv[4]));
    limit::Written out(argv[3]);
    out.write(file.bytes());
    out.flush();
    return 0;
  }
  std::fputs(
      "usage: limit docx-find FILE TEXT | docx FILE OUT TEXT LEVEL | docx-once FILE OUT TEXT LEVEL | "
      "text-find FILE TEXT | text FILE OUT "
      "TEXT\n",
      stderr);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "limit: %s\n", error.what());
    return 2;
  }
}
