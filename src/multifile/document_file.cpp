#include "errors/context.h"
#include "host_faults.h"
#include "multifile/file_driver.h"
#include "multifile/questions.h"
#include "saved_state.h"
#include "word/faults.h"

namespace pluvo::multifile {

using errors::Fault;
using errors::guarded;

bool isSaved(word::Document& document) {
  bool saved = false;
  attempt([&] { saved = document.Saved(); });
  return saved;
}

void keepSaved(word::Document& document) {
  attempt([&] {
    if (!document.Saved()) document.Saved(true);
  });
}

bool FileDriver::OpenDocumentFile(dialog::clsProcessFind& engine, Document& document,
                                  const std::u16string& path) {
  return guarded(engine.context(), u"cpf:44", [&] {
    return stepWith(engine, document, [&] { document = engine.application().Documents()->Open(path); });
  });
}

/// The work, again where the user wants it tried again. False: the file is left out.
bool FileDriver::stepWith(dialog::clsProcessFind& engine, Document& document, const Work& work) {
  for (;;) {
    const auto fault = attempt(work);
    if (!fault) return true;
    switch (fault->number) {
      case word::kCommandFailed:
        return false;
      case word::kProtectionPasswordWrong:
        if (!skipWithWrongPassword(engine.boxes())) continue;
        if (document) document->Close(false);
        document.reset();
        return false;
      case word::kOpenPasswordWrong:
        if (!openAgain(engine.boxes())) return false;
        continue;
      default:
        throw Fault(*fault);
    }
  }
}

bool FileDriver::CloseDocumentFile(dialog::clsProcessFind& engine, Document& document, bool readOnly,
                                   const std::u16string& fileName) {
  return guarded(engine.context(), u"cpf:43", [&] {
    const auto fault = attempt([&] { document->Close(!document->Saved()); });
    if (!fault) return true;
    if (fault->number != word::kFileReadOnly) throw Fault(*fault);
    if (!readOnly) return false;
    const auto documents = engine.application().Documents();
    for (std::int32_t i = 1; i <= documents->Count(); ++i) {
      const Document open = documents->Item(i);
      if (open->Path() + open->Name() != fileName || !cancelSaveAs(engine.boxes())) continue;
      document->Close(false);
      break;
    }
    return true;
  });
}

bool FileDriver::UnlockProtectedDocument(dialog::clsProcessFind& engine, Document& document,
                                         std::u16string& password, std::int16_t& protectionType) {
  return guarded(engine.context(), u"cpf:46", [&] {
    protectionType = static_cast<std::int16_t>(document->ProtectionType());
    if (!passwordPrompt_) passwordPrompt_ = std::make_unique<frmPassword>(engine.context(), engine.forms());
    for (;;) {
      if (!passwordForForm(*passwordPrompt_, engine.boxes(), password)) break;
      const bool wasSaved = isSaved(*document);
      const auto fault = attempt([&] { document->Unprotect(password); });
      if (!fault && wasSaved) keepSaved(*document);
      if (!fault) return true;
      if (fault->number == word::kCommandFailed) return false;
      if (fault->number != word::kProtectionPasswordWrong) throw Fault(*fault);
      if (skipWithWrongPassword(engine.boxes())) break;
    }
    document->Close(false);
    return false;
  });
}

}  // namespace pluvo::multifile
