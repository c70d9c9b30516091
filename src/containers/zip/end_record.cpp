#include "end_record.h"

#include "damage.h"
#include "fields.h"

#include <algorithm>
#include <optional>

namespace pluvo::zip {

namespace {

/// The last place where an end record and its comment reach exactly to the end of the file.
std::optional<std::size_t> findRecord(base::ByteSpan archive) {
  if (archive.size() < kEndRecordSize) return std::nullopt;
  const std::size_t last = archive.size() - kEndRecordSize;
  const std::size_t first = last - std::min<std::size_t>(last, 0xffff);
  for (std::size_t at = last + 1; at-- > first;) {
    if (get32(archive, at) != kEndRecord) continue;
    if (at + kEndRecordSize + get16(archive, at + end::kCommentLength) == archive.size()) return at;
  }
  return std::nullopt;
}

/// A field of the end record must say the same as its ZIP64 twin, or that the twin says it.
void requireTwin(std::uint64_t field, std::uint64_t elsewhere, std::uint64_t twin) {
  if (field != elsewhere && field != twin) throw damaged("its two end records contradict each other");
}

void readZip64(base::ByteSpan archive, base::ByteSpan record, EndRecord& found) {
  const std::size_t locatorAt = found.record - kEndLocator64Size;
  const base::ByteSpan locator = archive.subspan(locatorAt, kEndLocator64Size);
  const std::uint64_t at = get64(locator, locator64::kRecord);
  if (locatorAt < kEndRecord64Size || at > locatorAt - kEndRecord64Size ||
      get32(archive, at) != kEndRecord64 || get64(archive, at + end64::kRecordSize) != locatorAt - at - 12) {
    throw damaged("its ZIP64 end record is not where it should be");
  }
  const base::ByteSpan twin = archive.subspan(at, kEndRecord64Size);
  if (get32(twin, end64::kDisk) != 0 || get32(twin, end64::kDirectoryDisk) != 0 ||
      get32(locator, locator64::kRecordDisk) != 0 ||
      get64(twin, end64::kEntriesHere) != get64(twin, end64::kEntries)) {
    throw damaged("it is one part of an archive split over several files");
  }
  found.zip64 = true;
  found.begin = at;
  found.entries = get64(twin, end64::kEntries);
  found.directory = get64(twin, end64::kDirectory);
  found.directorySize = get64(twin, end64::kDirectorySize);
  requireTwin(get16(record, end::kEntries), kElsewhere16, found.entries);
  requireTwin(get32(record, end::kDirectory), kElsewhere32, found.directory);
  requireTwin(get32(record, end::kDirectorySize), kElsewhere32, found.directorySize);
}

void readPlain(base::ByteSpan record, EndRecord& found) {
  if (get16(record, end::kDisk) != 0 || get16(record, end::kDirectoryDisk) != 0 ||
      get16(record, end::kEntriesHere) != get16(record, end::kEntries)) {
    throw damaged("it is one part of an archive split over several files");
  }
  found.begin = found.record;
  found.entries = get16(record, end::kEntries);
  found.directory = get32(record, end::kDirectory);
  found.directorySize = get32(record, end::kDirectorySize);
}

}  // namespace

EndRecord findEndRecord(base::ByteSpan archive) {
  const std::optional<std::size_t> at = findRecord(archive);
  if (!at) throw damaged("its end is missing or followed by other bytes, as after an incomplete copy");
  EndRecord found;
  found.record = *at;
  const base::ByteSpan record = archive.subspan(*at, kEndRecordSize);
  if (*at >= kEndLocator64Size && get32(archive, *at - kEndLocator64Size) == kEndLocator64) {
    readZip64(archive, record, found);
  } else {
    readPlain(record, found);
  }
  if (found.directory > found.begin || found.directorySize != found.begin - found.directory) {
    throw damaged("its directory is not where its end says");
  }
  return found;
}

}  // namespace pluvo::zip
