#include "wording.h"

#include <cerrno>

namespace pluvo::files {

namespace {

/// "(No space left on device)"
std::string reasonOf(const std::system_error& failure) { return " (" + failure.code().message() + ")"; }

}  // namespace

errors::DocumentError readingFailed(const std::system_error& failure) {
  switch (failure.code().value()) {
    case ENOENT:
    case ENOTDIR:
      return {errors::Problem::io, "There is no such file; check its name and folder."};
    case ELOOP:
      return {errors::Problem::io, "The link leads in a circle; name the document itself."};
    case EACCES:
    case EPERM:
      return {errors::Problem::io, "You may not read this file; ask its owner for permission."};
    case ENAMETOOLONG:
      return {
          errors::Problem::io,
          "Its path is longer than this system or disk allows; shorten it, or run this from a folder nearer "
          "to it."};
    case ENXIO:
      return {errors::Problem::io, "This is not a file with a document in it; name the document itself."};
    default:
      return {errors::Problem::io,
              "The file could not be read" + reasonOf(failure) + "; check the disk it is on."};
  }
}

errors::DocumentError savingFailed(const std::system_error& failure) {
  switch (failure.code().value()) {
    case ENOSPC:
    case EDQUOT:
      return {errors::Problem::io,
              "There is no room on the disk for the new version; the original is unchanged. Make room and "
              "try again."};
    case ENOENT:
      return {errors::Problem::changed,
              "The document or its folder is gone; another program moved or deleted it.",
              "Run this again where it is now."};
    case EFAULT:
      return {errors::Problem::changed,
              "Another program cut the file short while it was open here; it was left as it is.",
              "Run this again."};
    case EFBIG:
      return {errors::Problem::tooLarge,
              "The new version is larger than this disk or user may have; the original is unchanged."};
    case ENAMETOOLONG:
      return {errors::Problem::io,
              "A name that would be made for it is longer than the disk allows; the original is unchanged.",
              "Give a shorter suffix for the backup, or a folder with a shorter name."};
    case EPERM:
      return {
          errors::Problem::readOnly,
          "The system does not let the document be replaced, though its permissions would: it or its folder "
          "is append-only or immutable (lsattr shows that), or the folder leaves that to a file's owner; the "
          "original is unchanged.",
          "Save to another folder, or ask for permission."};
    case EACCES:
    case EROFS:
      return {errors::Problem::readOnly,
              "You may not write in the folder of this document; the original is unchanged.",
              "Save to another folder, or ask for permission."};
    default:
      return {errors::Problem::io, "The new version could not be saved" + reasonOf(failure) +
                                       "; the original is unchanged. Check the disk and try again."};
  }
}

}  // namespace pluvo::files
