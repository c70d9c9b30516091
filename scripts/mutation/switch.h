// Included by every mutated source: which of its changes is made, chosen by PLUVO_MUTANT when the program
// starts.
//
// 0, or nothing, is the program as it was written. -1 is as well, but notes in the file PLUVO_MUTANT_REACHED,
// a byte for each change, which of them came up.
#pragma once
#pragma GCC system_header

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cstdlib>
#include <type_traits>

namespace mutants {

inline const long chosen = [] {
  const char* number = std::getenv("PLUVO_MUTANT");
  return number ? std::atol(number) : 0L;
}();

inline void reached(long id) {
  // Mapped, so that a program that is killed, or another that it starts, has told all the same.
  static char* const seen = [] {
    const char* name = std::getenv("PLUVO_MUTANT_REACHED");
    const int file = name ? ::open(name, O_RDWR | O_CLOEXEC) : -1;
    struct stat facts {};
    if (file < 0 || ::fstat(file, &facts) != 0) return static_cast<char*>(nullptr);
    void* bytes =
        ::mmap(nullptr, static_cast<std::size_t>(facts.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    return bytes == MAP_FAILED ? nullptr : static_cast<char*>(bytes);
  }();
  if (seen) seen[id] = 1;
}

// A constant of the compiler's own is not changed.
constexpr bool on(long id) {
  if (std::is_constant_evaluated()) return false;
  if (chosen < 0) [[unlikely]]
    reached(id);
  return chosen == id;
}

// `now` is not constant, so that a constant made of it is made at run time, when the choice is known.
#define PLUVO_MUTATED(WORD, ON)                              \
  template <typename A, typename B>                          \
  WORD auto less(long id, const A& a, const B& b) {          \
    return ON(id) ? a <= b : a < b;                          \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto lessOrEqual(long id, const A& a, const B& b) {   \
    return ON(id) ? a < b : a <= b;                          \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto more(long id, const A& a, const B& b) {          \
    return ON(id) ? a >= b : a > b;                          \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto moreOrEqual(long id, const A& a, const B& b) {   \
    return ON(id) ? a > b : a >= b;                          \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto sum(long id, const A& a, const B& b) {           \
    return ON(id) ? a - b : a + b;                           \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto difference(long id, const A& a, const B& b) {    \
    return ON(id) ? a + b : a - b;                           \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto product(long id, const A& a, const B& b) {       \
    return ON(id) ? a / b : a * b;                           \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto quotient(long id, const A& a, const B& b) {      \
    return ON(id) ? a * b : a / b;                           \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto rest(long id, const A& a, const B& b) {          \
    return ON(id) ? a * b : a % b;                           \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto both(long id, const A& a, const B& b) {          \
    return ON(id) ? a | b : a & b;                           \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto either(long id, const A& a, const B& b) {        \
    return ON(id) ? a & b : a | b;                           \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto shiftedUp(long id, const A& a, const B& b) {     \
    return ON(id) ? a >> b : a << b;                         \
  }                                                          \
  template <typename A, typename B>                          \
  WORD auto shiftedDown(long id, const A& a, const B& b) {   \
    return ON(id) ? a << b : a >> b;                         \
  }                                                          \
  template <typename A, typename B>                          \
  WORD decltype(auto) add(long id, A& a, const B& b) {       \
    return ON(id) ? (a -= b) : (a += b);                     \
  }                                                          \
  template <typename A, typename B>                          \
  WORD decltype(auto) subtract(long id, A& a, const B& b) {  \
    return ON(id) ? (a += b) : (a -= b);                     \
  }                                                          \
  template <typename A>                                      \
  WORD A number(long id, A a) {                              \
    if (ON(id)) return static_cast<A>(a + 1);                \
    return a != 0 && ON(id + 1) ? static_cast<A>(a - 1) : a; \
  }                                                          \
  template <typename A>                                      \
  WORD A character(long id, A a) {                           \
    return ON(id) ? static_cast<A>(a + 1) : a;               \
  }                                                          \
  WORD bool truth(long id, bool a) { return ON(id) != a; }

PLUVO_MUTATED(constexpr, ::mutants::on)

namespace now {
inline bool on(long id) {
  if (chosen < 0) [[unlikely]]
    reached(id);
  return chosen == id;
}
PLUVO_MUTATED(inline, ::mutants::now::on)
}  // namespace now

}  // namespace mutants
