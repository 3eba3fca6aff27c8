#include "adapters/headless/scenario/headless_operator.h"
#include "host/stage.h"

namespace tpv {

namespace {

class HeadlessStage : public Stage {
 public:
  ui::FrontEnd& FrontEnd() override { return front_end_; }
  ui::Operator& Hands() override { return hands_; }
  void SetDriver(ui::Driver& driver) override { front_end_.SetDriver(driver); }

 private:
  HeadlessFrontEnd front_end_;
  scenario::HeadlessOperator hands_{front_end_};
};

class Headless : public Theatre {
 public:
  std::unique_ptr<Stage> SetUp() override { return std::make_unique<HeadlessStage>(); }
};

}  // namespace

std::unique_ptr<Theatre> HeadlessTheatre() { return std::make_unique<Headless>(); }

}  // namespace tpv
