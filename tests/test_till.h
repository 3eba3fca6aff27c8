// A whole till for one test: the component on a demonstration shop, driven by
// scenario text, with its ports at hand.
#pragma once

#include <memory>
#include <sstream>
#include <string>

#include "adapters/headless/scenario/headless_operator.h"
#include "adapters/headless/scenario/player.h"
#include "host/known_settings.h"
#include "host/store.h"
#include "office/menu_screen.h"
#include "tests/test_shop.h"

namespace tpv {

class TestTill {
 public:
  // Several tills may share a store that was made before.
  TestTill(const std::string& path, const Clock& clock)
      : TestTill(OpenStore(path, Contents::Demonstration, clock), clock) {
    rig_.premises.connect = [path, &clock] { return OpenExistingStore(path, clock); };
  }
  TestTill(std::unique_ptr<Connection> store, const Clock& clock)
      : store_(std::move(store)),
        connection_(*store_),
        shop_(connection_, clock),
        component_(std::in_place, shop_.ports),
        rig_{connection_,  shop_.step_clock, shop_.printers, shop_.devices, shop_.settings,
             shop_.mailer, shop_.reports,    shop_.sound,    component_,    {}},
        hands_(shop_.front_end),
        player_(rig_, hands_, transcript_) {
    component_->context().MyBd = shop_.database;
    shop_.front_end.SetDriver(player_);
    rig_.premises.open_office = [this] { office::OpenOffice(context(), tools_); };
    rig_.premises.configure = [this](const std::string& name, const std::string& value) {
      ChangeSetting(shop_.settings, name, value);
    };
  }

  // "" when every expectation held, else the transcript.
  std::string Play(const std::string& script) {
    transcript_.str("");
    std::vector<scenario::Command> commands;
    std::istringstream lines(script);
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
      commands.push_back(scenario::ReadCommand(line, "test", ++number));
    }
    return player_.Play(std::move(commands)) ? std::string() : transcript_.str();
  }

  // What its script's `office` opens, if not its own: another till's.
  void OpensOffice(std::function<void()> open) { rig_.premises.open_office = std::move(open); }
  Zrtpve& component() { return *component_; }
  Context& context() { return component_->context(); }
  TestShop& shop() { return shop_; }
  Connection& store() { return *store_; }
  RecordingConnection& connection() { return connection_; }

 private:
  std::unique_ptr<Connection> store_;
  RecordingConnection connection_;
  TestShop shop_;
  std::optional<Zrtpve> component_;
  office::Tools tools_;
  scenario::Rig rig_;
  scenario::HeadlessOperator hands_;
  std::ostringstream transcript_;
  scenario::Player player_;
};

}  // namespace tpv
