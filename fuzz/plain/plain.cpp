// Text files of any bytes: read, in an encoding that is told or named, written back unchanged, edited,
// written and read again.

#include "plain/plain_format.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace pluvo;
using base::ByteSpan;
using text::Position;

void require(bool condition) {
  if (!condition) std::abort();
}

std::vector<std::uint8_t> written(const formats::Opened& opened, const document::Document& document) {
  base::MemoryOutput out;
  opened.source->write(document, out);
  return out.bytes();
}

std::u16string textOf(const document::Story& model) { return model.text().substring(0, model.length()); }

/// Whether a byte order mark says how the text is stored, whatever the rest of it is.
bool hasMark(ByteSpan bytes) {
  return bytes.size() >= 2 &&
         ((bytes[0] == 0xFF && bytes[1] == 0xFE) || (bytes[0] == 0xFE && bytes[1] == 0xFF));
}

bool hasUtf8Mark(ByteSpan bytes) {
  return bytes.size() >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF;
}

/// The hint of the encoding.
formats::Hint hintOf(std::uint8_t choice) {
  static const char* const names[] = {"",       "UTF-8",   "UTF-16LE", "Windows-1252", "Shift_JIS", "EUC-JP",
                                      "GBK",    "GB18030", "Big5",     "Big5-HKSCS",   "EUC-KR",    "EUC-TW",
                                      "KOI8-R", "CP1258",  "IBM037",   "macintosh",    "VISCII",    "CP1255"};
  return {names[choice / 2 % std::size(names)], choice % 2 == 1 && choice > 1};
}

/// Four bytes make an edit: where (two), how many go, what comes.
void edit(document::Story& model, const formats::Source& source, ByteSpan program) {
  static const std::u16string texts[] = {u"",   u"\r",         u"\n",     u"x",     u"é\r",
                                         u"→",  u"\U0001F4DC", u"\xDC00", u"\r\rZ", u"Ж",
                                         u"表", u"\xDC81",     u"\xD83D"};
  for (; program.size() >= 4; program = program.subspan(4)) {
    const Position last = model.length() - 1;
    const Position from = (program[0] | program[1] << 8) % (last + 1);
    const Position to = std::min<Position>(from + program[2] % 8, last);
    const std::u16string& text = texts[program[3] % std::size(texts)];
    if (!source.refusesText(text)) model.replace({from, to}, text, text::View::results);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const formats::Hint hint = hintOf(data[0]);
  const std::size_t edits = std::min<std::size_t>(data[1] % 8 * std::size_t{4}, size - 2);
  const ByteSpan program(data + 2, edits);
  const std::vector<std::uint8_t> file(data + 2 + edits, data + size);
  const plain::PlainFormat format;
  try {
    const formats::Opened opened = format.read(base::Bytes::of(file), hint);
    document::Document document(opened.stories);
    document::Story& model = document.mainText();
    require(written(opened, document) == file);
    edit(model, *opened.source, program);
    const std::vector<std::uint8_t> edited = written(opened, document);
    const std::u16string again =
        textOf(document::Story(format.read(base::Bytes::of(edited), opened.again).stories.front()));
    // Bytes that are no UTF-8 may meet and be a character.
    const bool said = hint.certain && !hint.encoding.empty() && opened.encoding != "UTF-8" &&
                      !hasMark(edited) && !hasUtf8Mark(edited);
    require(!(said || hasMark(file)) || again == textOf(model));
  } catch (const errors::DocumentError&) {
    // Refused: an encoding that is not known, UTF-32, or half of a character.
  }
  return 0;
}
