#include "blocks.h"

#include "engine/clsProcessFind.h"
#include "errors/context.h"
#include "forms/form.h"
#include "forms/message_boxes.h"
#include "memory/application.h"

namespace pluvo::elsewhere {

namespace {

/// A pass that is quiet and confirms nothing shows neither.
class NoBoxes : public forms::MessageBoxes {
 public:
  forms::Answer show(const std::u16string&, forms::Buttons, const std::optional<std::u16string>&) override {
    return forms::Answer::cancel;
  }
};
class NoForms : public forms::FormHost {
 public:
  void runModal(forms::Form&) override {}
  void visibleChanged(forms::Form&) override {}
  void repaint(forms::Form&) override {}
};

class BlockCounter : public engine::PassObserver {
 public:
  Answer found(const engine::Block&) override {
    ++count_;
    return Answer::goOn;
  }
  std::int64_t count() const { return count_; }

 private:
  std::int64_t count_ = 0;
};

void handOver(const engine::Request& request, engine::clsProcessFind& find) {
  find.BeginBlock(request.beginBlock);
  find.EndBlock(request.endBlock);
  find.InsideBlock(request.insideBlock);
  find.UnitsApart(request.unitsApart);
  find.UnitsApartType(request.unitsApartType);
  find.MatchOnlyWholeWords(request.wholeWords);
  find.MatchTextCaseSetting(request.matchCase);
  find.ShowFieldCodes(request.showFieldCodes);
  find.Operation(engine::kNone);
  find.StartFindsAtBeginningSetting(true);
  find.QuiteModeSetting(true);
  find.LiftLimitsSetting(true);
}

}  // namespace

std::int64_t countBlocks(const std::shared_ptr<memory::MemoryDocument>& document,
                         const engine::Request& request) {
  const auto application = std::make_shared<memory::MemoryApplication>();
  application->add(document);
  errors::Context context;  // without a reporter, so that faults arrive here
  NoBoxes boxes;
  NoForms forms;
  BlockCounter counter;
  engine::clsProcessFind find(
      {[&] { return std::shared_ptr<word::Application>(application); }, context, boxes, forms});
  find.observer(&counter);
  handOver(request, find);
  find.GoGetEmFARBOT();
  return counter.count();
}

}  // namespace pluvo::elsewhere
