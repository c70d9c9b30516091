#include "files/reading.h"

#include "base/fresh_memory.h"
#include "errors/document_error.h"
#include "wording.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace pluvo::files {

namespace {

void requireRegular(FileKind kind) {
  switch (kind) {
    case FileKind::regular:
      return;
    case FileKind::folder:
      throw errors::DocumentError(errors::Problem::io,
                                  "This is a folder, not a document; name the documents in it.");
    case FileKind::pipe:
      throw errors::DocumentError(
          errors::Problem::io,
          "This is a named pipe, not a document; copy what it delivers to a file first.");
    case FileKind::link:
      throw errors::DocumentError(errors::Problem::io,
                                  "This is a link where a file should be; name the document itself.");
    case FileKind::device:
      throw errors::DocumentError(errors::Problem::io, "This is a device, not a document; name a file.");
    case FileKind::socket:
      throw errors::DocumentError(
          errors::Problem::io,
          "This is a socket, by which programs talk to each other, not a document; name a file.");
  }
}

errors::DocumentError changedMeanwhile() {
  return {errors::Problem::changed, "Another program is writing this file; try again when it is done."};
}

base::Bytes readWhole(FileSystem& system, Handle file, std::size_t size) {
  const auto bytes = base::freshMemory(size + 1);
  const std::span<std::uint8_t> all(bytes.get(), size);
  std::size_t filled = 0;
  while (filled < size) {
    const std::size_t count = system.read(file, filled, all.subspan(filled));
    if (count == 0) throw changedMeanwhile();
    filled += count;
  }
  bytes[static_cast<std::ptrdiff_t>(size)] = base::Bytes::kBehind;
  return {all, bytes, nullptr};
}

void requireNoLink(FileSystem& system, const Place& place, const std::string& what) {
  if (system.statusAt(place).kind == FileKind::link)
    throw errors::DocumentError(
        errors::Problem::changed,
        what + " has become a link since the folder was looked through, and was not followed.",
        "Run this again.");
}

template <class Work>
auto reading(Work work) {
  try {
    return work();
  } catch (const std::system_error& failure) {
    throw readingFailed(failure);
  }
}

}  // namespace

FileContent readFile(FileSystem& system, Handle file) {
  const FileStatus status = system.status(file);
  requireRegular(status.kind);
  const auto size = static_cast<std::size_t>(status.stamp.size);
  base::Bytes bytes = size < kMappedFrom ? readWhole(system, file, size) : system.map(file, size);
  if (system.status(file).stamp != status.stamp) throw changedMeanwhile();
  return {std::move(bytes), status.stamp};
}

FileContent readFileBelow(FileSystem& system, const std::string& path, std::size_t folderLength) {
  OpenFolder folder = reading([&] { return OpenFolder(system, path.substr(0, folderLength)); });
  std::size_t from = folderLength;
  for (std::size_t to = 0; (to = path.find('/', from)) != std::string::npos; from = to + 1) {
    const Place next = folder.at(path.substr(from, to - from));
    if (next.name.empty()) continue;
    folder = reading([&] {
      requireNoLink(system, next, "\"" + path.substr(0, to) + "\"");
      return OpenFolder(system, next);
    });
  }
  const Place file = folder.at(path.substr(from));
  reading([&] { requireNoLink(system, file, "The file"); });
  return readFile(system, file);
}

FileContent readFile(FileSystem& system, const Place& place) {
  try {
    requireRegular(system.statusAt(place).kind);  // opening a device may already do something
    const OpenFile file(system, system.openToRead(place));
    return readFile(system, file.handle());
  } catch (const std::system_error& failure) {
    if (failure.code().value() == ENOENT && system.exists(place))
      throw errors::DocumentError(errors::Problem::io,
                                  "The link leads to a file that is gone; mend the link, or remove it.");
    throw readingFailed(failure);
  }
}

}  // namespace pluvo::files
