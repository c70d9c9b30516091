#include "blocks.h"

#include "engine/engine.h"
#include "memory/application.h"

namespace pluvo::elsewhere {

namespace {

/// A pass that changes nothing fails where something is wrong with the document.
class Caller : public engine::Observer {
 public:
  void failed(const errors::Fault& fault, errors::Tag) override { throw fault; }
};

}  // namespace

std::int64_t countBlocks(const std::shared_ptr<memory::MemoryDocument>& document,
                         const engine::Request& request) {
  const auto application = std::make_shared<memory::MemoryApplication>();
  application->add(document);
  engine::Request finding = request;
  finding.operation = engine::kNone;
  finding.stories = word::kMainTextAlone;
  finding.startAtTop = true;
  finding.confirmEach = false;
  finding.liftLimits = true;
  Caller caller;
  return engine::Engine(*application, caller).pass(finding).found;
}

}  // namespace pluvo::elsewhere
