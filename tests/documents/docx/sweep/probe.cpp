// One document through the room, as sweep.py asks:
//
//     docx_probe read FILE                    opens it
//     docx_probe same FILE                    writes it unedited and compares every member's bytes
//     docx_probe mark FILE OUT                highlights every "e" and reads the result again
//     docx_probe edit FILE OUT SEED           a random program of edits; OUT.txt gets the text it should have
//
// Prints one line of key=value pairs; exit 0 for an answer of any kind, 1 where the room contradicts itself.
#include "documents/docx/document_builder.h"
#include "documents/docx/package_check.h"
#include "documents/docx/random_edits.h"
#include "errors/text.h"
#include "model/model.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

namespace {

using namespace pluvo;
using text::Position;

files::Bytes load(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return files::Bytes::of(std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {}));
}

void store(const std::string& path, files::ByteSpan bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

/// The text with field results, hidden text too, for a comparison with what another program reads.
std::string comparable(const model::Model& model) {
  std::u16string shown;
  std::vector<bool> inCode;
  for (Position i = 0; i < model.length(); ++i) {
    const char16_t unit = model.text().at(i);
    const bool isMark = model.isFieldMark(i);
    if (isMark && unit == text::kFieldBegin) inCode.push_back(true);
    if (isMark && unit == text::kFieldSeparator && !inCode.empty()) inCode.back() = false;
    if (isMark && unit == text::kFieldEnd && !inCode.empty()) inCode.pop_back();
    const bool code = std::find(inCode.begin(), inCode.end(), true) != inCode.end();
    if (!isMark && !code) shown.push_back(unit);
  }
  return errors::utf8(shown);
}

int mark(const std::string& in, const std::string& out) {
  docx::Opened document = docx::open(load(in));
  const std::u16string before = document.text();
  Position marked = 0;
  for (Position i = 0; i < document.model.length(); ++i) {
    // The code of a simple field is an attribute, which no highlight can show.
    const bool shown = (document.model.visibility().valueAt(i) & text::kInResults) != 0;
    if (before[static_cast<std::size_t>(i)] != u'e' || !shown) continue;
    document.model.highlight({i, i + 1}, 7);
    ++marked;
  }
  const files::Bytes bytes = document.written();
  store(out, bytes.view);
  const docx::Opened again = docx::open(bytes);
  Position found = 0;
  for (Position i = 0; i < again.model.length(); ++i) {
    const bool shown = (again.model.visibility().valueAt(i) & text::kInResults) != 0;
    if (again.model.text().at(i) == u'e' && shown && again.model.highlight().valueAt(i) == 7) ++found;
  }
  const bool same = again.text() == before;
  const std::string worse = docx::worsened(docx::faultsOf(load(in)), docx::faultsOf(bytes));
  std::cout << "same=" << same << " worse=" << worse << " marked=" << marked << " found=" << found << "\n";
  return same && marked == found && worse.empty() ? 0 : 1;
}

int edit(const std::string& in, const std::string& out, unsigned seed) {
  docx::Opened document = docx::open(load(in));
  std::mt19937 random(seed);
  const auto next = [&] { return static_cast<std::uint32_t>(random() >> 3U); };
  for (int i = 0; i < 20; ++i) docx::editBySeed(document.model, {next(), next(), next(), next()});
  const files::Bytes bytes = document.written();
  store(out, bytes.view);
  const std::string shown = comparable(document.model);
  std::ofstream(out + ".txt", std::ios::binary) << shown;
  const docx::Opened again = docx::open(bytes);
  const bool same = again.text() == document.text();
  if (!same) {
    std::ofstream(out + ".want", std::ios::binary) << errors::utf8(document.text());
    std::ofstream(out + ".got", std::ios::binary) << errors::utf8(again.text());
  }
  const std::string worse = docx::worsened(docx::faultsOf(load(in)), docx::faultsOf(bytes));
  std::cout << "same=" << same << " worse=" << worse << "\n";
  return same && worse.empty() ? 0 : 1;
}

int read(const std::string& in, const char* textTo) {
  const auto start = std::chrono::steady_clock::now();
  const docx::Opened document = docx::open(load(in));
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::cout << "length=" << document.model.length() << " ms=" << static_cast<long>(took.count() * 1000)
            << " kb=" << usage.ru_maxrss << "\n";
  if (textTo != nullptr) std::ofstream(textTo, std::ios::binary) << comparable(document.model);
  return 0;
}

int same(const std::string& in) {
  const docx::Opened document = docx::open(load(in));
  const bool equal = docx::open(document.written()).text() == document.text();
  std::cout << "same=" << equal << "\n";
  return equal ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string mode = argc > 2 ? argv[1] : "";
  try {
    if (mode == "read") return read(argv[2], argc > 3 ? argv[3] : nullptr);
    if (mode == "same") return same(argv[2]);
    if (mode == "mark" && argc > 3) return mark(argv[2], argv[3]);
    if (mode == "edit" && argc > 4) return edit(argv[2], argv[3], static_cast<unsigned>(std::atoi(argv[4])));
  } catch (const files::DocumentError& error) {
    std::cout << "refused=" << files::nameOf(error.problem()) << " " << error.what() << "\n";
    return 0;
  } catch (const std::exception& error) {
    std::cout << "exception " << error.what() << "\n";
    return 1;
  }
  std::cerr << "usage: docx_probe read|same|mark|edit FILE [OUT [SEED]]\n";
  return 2;
}
