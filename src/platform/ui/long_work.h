// Work that may take longer than a moment: the operator sees how far it is, and can
// give it up as long as nothing is written.
#pragma once

#include <chrono>
#include <string>

#include "platform/pulse.h"

namespace tpv::ui {

class FrontEnd;

struct Progress {
  std::string title;
  std::string stage;           // what is being done now
  double share = -1;           // of the stage, 0 to 1; negative when it is not known
  bool can_be_given_up = true;
};

class LongWork : private PulseListener {
 public:
  // The front end outlives it.
  LongWork(FrontEnd& front_end, std::string title);
  ~LongWork() override;

  // Begins the next part. Throws GivenUp, as any pulse in a part that may be given up.
  void Stage(std::string stage) { Begin(std::move(stage), true); }
  // The same, and from here on it is written: there is no way back.
  void LastStage(std::string stage) { Begin(std::move(stage), false); }

 private:
  using Clock = std::chrono::steady_clock;

  void Begin(std::string stage, bool can_be_given_up);
  void OnPulse(double share) override;
  bool WantsFirstRows() override;
  void ShowFirstRows() override;
  void Show();

  FrontEnd& front_end_;
  Progress progress_;
  const Clock::time_point began_ = Clock::now();
  Clock::time_point shown_ = began_;
  bool first_rows_shown_ = false;
  bool given_up_ = false;  // what is being undone is not given up again
};

}  // namespace tpv::ui
