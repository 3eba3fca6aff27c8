#include <stdexcept>

#include "adapters/qt/native_input.h"
#include "adapters/qt/placing.h"
#include "adapters/qt/qt_operator.h"
#include "host/stage.h"
#include "host/windows/application.h"

namespace tpv {

namespace {

class WindowStage : public Stage {
 public:
  ui::FrontEnd& FrontEnd() override { return front_end_; }
  ui::Operator& Hands() override { return hands_; }
  void SetDriver(ui::Driver& driver) override { front_end_.SetDriver(driver); }
  void TakePicture() override {
    front_end_.Refresh();
    qt::SettleWindows();
    picture_ = front_end_.Picture();
  }
  void SavePicture(const std::string& path) override {
    if (!qt::SavePicture(picture_, path)) {
      throw std::runtime_error("No se puede guardar la imagen «" + path + "»");
    }
  }

 private:
  qt::QtFrontEnd front_end_;
  qt::QtOperator hands_{front_end_};
  QPixmap picture_;
};

class TrialWindows : public Theatre {
 public:
  std::unique_ptr<Stage> SetUp() override { return std::make_unique<WindowStage>(); }

 private:
  Application application_;
};

}  // namespace

std::unique_ptr<Theatre> WindowTheatre(const ScreenSize& screen) {
  auto windows = std::make_unique<TrialWindows>();
  if (screen.width > 0) qt::PretendScreen({screen.width, screen.height});
  return windows;
}

}  // namespace tpv
