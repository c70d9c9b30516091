#pragma once

#include "runs/face.h"

#include <string>

namespace pluvo::runs {

/// The face's decisions on one document. Remembers those on more than one block.
class Asking {
 public:
  using Reply = Answer::Reply;

  /// Both outlive it.
  Asking(Face& face, const std::string& path, std::size_t number)
      : face_(face), path_(path), number_(number) {}

  bool answers(Question question) const { return face_.answers(question); }
  /// No where the face gives no answers. The tries are those of passwords, the block is that of perform.
  Answer ask(Question question, std::size_t tries = 0, const BlockReport* block = nullptr) {
    if (!answers(question) || isStopped_) return {};
    Answer answer = face_.answer({question, path_, number_, tries, block});
    if (answer.reply == Reply::stop) isStopped_ = true;
    return answer;
  }

  /// The pass that the face made, if it did.
  std::optional<engine::PassResult> pass(const std::shared_ptr<store::StoredDocument>& stored,
                                         const engine::Request& request, engine::PassObserver& watcher) {
    return face_.pass({stored, request, number_, watcher});
  }

  /// Whether the document is to be left as it is, at once.
  bool isCancelled() {
    if (!isCancelled_) isCancelled_ = face_.cancelled() == Cancelled::atOnce;
    return isCancelled_;
  }
  /// Whether the run ends in this document, by an answer or so.
  bool endsHere() const { return isStopped_ || isCancelled_; }

  /// All other blocks are found and left, without a question.
  void leaveTheRest() { isRestLeft_ = true; }
  bool isRestLeft() const { return isRestLeft_; }

 private:
  Face& face_;
  const std::string& path_;
  std::size_t number_;
  bool isRestLeft_ = false;
  bool isStopped_ = false;
  bool isCancelled_ = false;
};

}  // namespace pluvo::runs
