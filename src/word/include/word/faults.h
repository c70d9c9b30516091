#pragma once

#include <cstdint>

/// Numbers of the faults a word processor raises.
namespace pluvo::word {

enum WordFault : std::int32_t {
  kCommandFailed = 4198,    ///< also: the user cancelled a password question
  kNoDocument = 4248,       ///< ActiveDocument with none open
  kNotAvailable = 4605,     ///< the member has no place in this document (highlight in plain text)
  kValueOutOfRange = 4608,  ///< a position outside the text
  kFileReadOnly = 5155,     ///< it could not be saved under its name
  kFileNotFound = 5174,
  kCannotSave = 5356,
  kOpenPasswordWrong = 5408,
  kProtectionPasswordWrong = 5485,
  kObjectDeleted = 5825,        ///< the document of a range is closed
  kParameterOutOfRange = 5843,  ///< a text the document's encoding or format cannot hold; an unknown colour
  kFileCorrupted = 5792,
  kStringTooLong = 5854,
  kMemberMissing = 5941,       ///< the requested member of the collection does not exist
  kProtectedSelection = 6124,  ///< editing a protected document
};

}  // namespace pluvo::word
