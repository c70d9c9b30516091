#include "member.h"

#include <string>

namespace pluvo::memory {

void tellMember(errors::Fault& fault, const char16_t* name) {
  fault.source = std::u16string(u"PLUVO (") + name + u")";
}

}  // namespace pluvo::memory
