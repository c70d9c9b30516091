#include "links.h"

#include "errors/context.h"

#include <optional>
#include <utility>

namespace pluvo::dialog {

namespace {

constexpr const char16_t* kProductPage = u"http://www.pluvo.example/";

/// Which of them there is depends on the system.
constexpr const char16_t* kStarters[] = {u"start ", u"cmd.exe /c start ", u"command.com /c start "};

}  // namespace

Links::Links(Pages& pages, clsProcessFind& engine, forms::Launcher& launcher, OwnDocuments documents)
    : engine_(engine), launcher_(launcher), documents_(std::move(documents)) {
  opens(pages.Options.lblInstructions, u"FF:25", u"Instructions.doc");
  opens(pages.Options.lblReadMe, u"FF:27", u"Readme.txt");
  pages.pgAbout.lblDownloadSite.Click.handledBy([this] { lblDownloadSite_Click(); });
}

void Links::opens(forms::Label& label, std::u16string_view tag, const char16_t* fileName) {
  label.Click.handledBy([this, tag, fileName] {
    errors::guarded(engine_.context(), tag, [&] {
      word::Application& application = engine_.application();
      const std::u16string path = documents_.folder + application.PathSeparator() + fileName;
      if (documents_.show) return documents_.show(path);
      const auto documents = application.Documents();
      if (documents == nullptr) throw errors::objectNotSet();
      documents->Open(path);
    });
  });
}

void Links::lblDownloadSite_Click() {
  errors::guarded(engine_.context(), u"FF:24", [&] {
    std::optional<errors::Fault> last;
    for (const char16_t* starter : kStarters) {
      try {
        return launcher_.launchHidden(std::u16string(starter) + kProductPage);
      } catch (const errors::Fault& fault) {
        last = fault;
      }
    }
    throw errors::Fault(*last);
  });
}

}  // namespace pluvo::dialog
