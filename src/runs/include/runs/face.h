#pragma once

#include "base/secret_text.h"
#include "engine/observer.h"
#include "engine/pass_result.h"
#include "engine/request.h"
#include "runs/observer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace pluvo::store {
class StoredDocument;
}

namespace pluvo::runs {

/// A question of a run about a document. The words are the face's.
enum class Question : std::uint8_t {
  perform,    ///< is the operation to be carried out on this block?
  temporary,  ///< is it to be worked on, though its name is that of a word processor's temporary file?
  readOnly,   ///< is it to be worked on, though it may not be replaced? Before it is saved, saveAs is asked
  openPassword,    ///< by which password is it opened?
  password,        ///< by which password is its protection lifted?
  changePassword,  ///< by which password may it be replaced? Else it may be read, and saved elsewhere
  readIt,  ///< is it opened to be read, as it recommends? Where nobody answers it is changed all the same
  saveAs,  ///< where is the new version of a document to go that may not be replaced?
};

struct Asked {
  Question question;
  const std::string& path;
  std::size_t number;                  ///< of the document in the list, from 1
  std::size_t tries = 0;               ///< of passwords: how many were wrong
  const BlockReport* block = nullptr;  ///< of perform
};

struct Answer {
  enum class Reply : std::uint8_t {
    yes,
    no,             ///< the block stays; the document has the problem that was asked about
    restUnchanged,  ///< no to this block and to all that are left in the document
    stop,           ///< the run ends with the changes made so far in this document
  };
  Reply reply = Reply::no;
  base::SecretText password = {};  ///< with a yes to what asks for one
  std::string path = {};           ///< with a yes to saveAs; its name must be free
};

/// A document that is open, and may be changed and saved, for a face that makes passes itself.
struct OpenForPass {
  const std::shared_ptr<store::StoredDocument>& stored;
  const engine::Request& request;
  std::size_t number;             ///< of the document in the list, from 1
  engine::PassObserver& watcher;  ///< to be told of every block, for reports; it may end the pass
};

enum class Cancelled : std::uint8_t {
  no,
  afterDocuments,  ///< those at hand are finished, and no other is begun
  atOnce,          ///< those at hand are left as they were
};

/// The owner of a run: is told of it, answers its questions, and may end it.
class Face : public Observer {
 public:
  /// Whether the face answers such questions. Others are not asked: the document has the problem,
  /// and of one that may not be replaced only where it would be.
  virtual bool answers(Question /*question*/) const { return false; }
  /// Whether one document is worked on after the other, so that what became of one is known before anything
  /// is asked about the next. Else answer() is called by several threads.
  virtual bool oneByOne() const { return answers(Question::perform); }
  virtual Answer answer(const Asked& /*asked*/) { return {}; }
  /// Makes a pass over the document; nothing where the run is to make it.
  virtual std::optional<engine::PassResult> pass(const OpenForPass& /*open*/) { return std::nullopt; }
  /// Asked very often, before every search, from every thread that works on a document.
  virtual Cancelled cancelled() { return Cancelled::no; }
  /// Before any document is opened: a sentence on what the user must do for the run to be safe.
  virtual void warns(const std::string& /*sentence*/) {}
  /// A sentence for the user: of folderRefused what to do, without a capital; of others what is wrong, too.
  virtual std::string sentenceFor(Trouble trouble) const = 0;
};

}  // namespace pluvo::runs
