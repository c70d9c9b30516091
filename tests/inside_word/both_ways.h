#pragma once

#include "dialog/workplace.h"
#include "word_stand_in/word_session.h"

#include <memory>
#include <string>
#include <vector>

/// One and the same pass over a document in memory, and over one in Word.
namespace pluvo::inside_word {

using stand_in::WordSession;

struct Task {
  std::u16string text;
  engine::Request asked;
  /// Tells the answers to what is asked.
  unsigned seed = 0;
};

/// What a pass leaves: the text, the highlights, and all that was said.
struct Outcome {
  std::u16string text;
  std::u16string highlights;
  std::vector<std::u16string> said;
};

Outcome inMemory(const Task& task);
Outcome inWord(const WordSession& word, const Task& task);

std::string words(const Outcome& outcome);
std::string words(const Task& task);

}  // namespace pluvo::inside_word
