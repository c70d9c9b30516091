#include "terminal_face.h"

namespace pluvo::cli {
namespace {

void sayFailure(const runs::Outcome& outcome) { sayError(runs::failureLine(outcome.path, *outcome.failure)); }

void sayRefused(const runs::Outcome& outcome) {
  sayNote(outcome.path + ": " + std::to_string(outcome.refused) +
          " of its changes were refused and left out.");
}

void sayOwner(const runs::Outcome& outcome) {
  const std::string lost = outcome.notKept.words();
  if (lost.empty()) return;
  sayNote(outcome.path + ": you may not give the new version the " + lost +
          " of the original; it has yours.");
}

/// Who gives a command to change it needs to change it, so that nobody is asked.
void sayRecommendation(const runs::Outcome& outcome) {
  if (outcome.recommendsReading && outcome.saved && outcome.savedAs.empty())
    sayNote(outcome.path + ": it recommends to be read only, and was changed as you said.");
}

void sayTemplate(const runs::Outcome& outcome) {
  if (outcome.isTemplate && outcome.saved)
    sayNote(outcome.path + ": it is a template; documents made from it earlier stay as they are.");
}

}  // namespace

TerminalFace::TerminalFace(const Plan& plan) : plan_(plan), printer_(printerFor(plan)) {}

void TerminalFace::begins(std::size_t documents) {
  printer_->begins(documents);
  if (plan_.othersMayReadPasswords && !plan_.quiet)
    sayNote("Note: other users can read the passwords in " + plan_.passwordFile +
            "; keep them to yourself with chmod 600.");
  if (plan_.confirm) interviewer_.emplace(documents);
  progress_.emplace(plan_, documents);
  interrupt_.emplace(plan_.confirm);
}

void TerminalFace::warns(const std::string& sentence) {
  if (!plan_.quiet) sayNote("Note: " + sentence);
}

void TerminalFace::block(const std::string& path, const runs::BlockReport& block) {
  progress_->add(block);
  progress_->clear();
  printer_->block(path, block);
  progress_->show();
}

void TerminalFace::document(const runs::Outcome& outcome) {
  progress_->add(outcome);
  progress_->clear();
  if (outcome.failure) sayFailure(outcome);
  if (outcome.refused > 0) sayRefused(outcome);
  sayOwner(outcome);
  sayRecommendation(outcome);
  sayTemplate(outcome);
  printer_->document(outcome);
  flushOut();
  progress_->show();
}

void TerminalFace::ends(const runs::Totals& totals) {
  progress_->end(totals);
  printer_->ends(totals);
  flushOut();
}

runs::Answer TerminalFace::answer(const runs::Asked& asked) { return {interviewer_->ask(asked)}; }

runs::Cancelled TerminalFace::cancelled() {
  return Interrupt::requested() ? runs::Cancelled::afterDocuments : runs::Cancelled::no;
}

std::string TerminalFace::sentenceFor(runs::Trouble trouble) const {
  switch (trouble) {
    case runs::Trouble::noName:
      return "The name is empty, as an unset variable makes it in a script; name the document.";
    case runs::Trouble::isFolder:
      return "It is a folder; add --recursive to work on the documents in it and below.";
    case runs::Trouble::placeTaken:
      return "An earlier document of this run has the same name and goes to the same place; give it another "
             "--output, or take both from their folder with --recursive, which keeps folders apart.";
    case runs::Trouble::folderRefused:
      return "ask its owner, or leave it out with --exclude.";
    case runs::Trouble::notOpened:
      return "No password in the file of --password-file opens it; add the right one, on a line of its own.";
    case runs::Trouble::wrongPasswords:
      return "No password in the file of --password-file lifts its protection; add the right one, on a line "
             "of its own.";
    case runs::Trouble::notReleased:
      return "No password in the file of --password-file is the one for changing it; add the right one, on a "
             "line of its own, or save the new version elsewhere with --output.";
    case runs::Trouble::documentsHashing:
      return "The passwords that were tried are not its own, and trying all of them would cost more hashing "
             "than one document may; put the right one among the first in the file of --password-file.";
    case runs::Trouble::runsHashing:
      break;
  }
  return "Trying passwords has cost this run as much hashing as a run may; run again on the documents that "
         "are left, with the right passwords first in the file of --password-file.";
}

}  // namespace pluvo::cli
