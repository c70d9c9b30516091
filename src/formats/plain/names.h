#pragma once

#include "code_pages/names.h"
#include "encoding.h"

namespace pluvo::plain {

using code_pages::encodingOf;
using code_pages::knownEncoding;
using code_pages::Named;
using code_pages::statefulEncoding;
using code_pages::utf8Named;
using code_pages::windows1252Named;

}  // namespace pluvo::plain
