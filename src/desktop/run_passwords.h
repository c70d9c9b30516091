#pragma once

#include "runs/face.h"
#include "store/known_passwords.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::desktop {

/// The passwords that the user types in a run over files. A password is tried on the documents that follow,
/// unless it was wrong. One that opened a document is known as long as the program runs.
class RunPasswords {
 public:
  explicit RunPasswords(std::shared_ptr<store::KnownPasswords> known) : known_(std::move(known)) {}

  /// A run begins, with these.
  std::vector<base::SecretText> begin();
  /// One to be tried before the user is asked; each comes once for a document and a question.
  std::optional<base::SecretText> next(const runs::Asked& asked);
  /// Whether the user typed one for this document and question before, which was wrong.
  bool wasWrong(const runs::Asked& asked) const;
  void typed(const runs::Asked& asked, const base::SecretText& password);
  void told(const runs::Outcome& outcome);

 private:
  using About = std::pair<std::string, runs::Question>;
  struct Typed {
    About about;
    base::SecretText password;
    bool isWrong = false;
  };

  std::shared_ptr<store::KnownPasswords> known_;
  std::vector<Typed> typed_;
  /// How many of those were tried.
  std::map<About, std::size_t> tried_;
};

}  // namespace pluvo::desktop
