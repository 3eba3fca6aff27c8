#include "platform/ui/long_work.h"

#include "platform/ui/front_end.h"

namespace tpv::ui {

LongWork::LongWork(FrontEnd& front_end, std::string title) : front_end_(front_end) {
  progress_.title = std::move(title);
}

LongWork::~LongWork() { front_end_.EndProgress(); }

void LongWork::Begin(std::string stage, bool can_be_given_up) {
  progress_.stage = std::move(stage);
  progress_.share = -1;
  progress_.can_be_given_up = can_be_given_up;
  Show();
}

void LongWork::OnPulse(double share) {
  constexpr std::chrono::milliseconds kBetweenLooks{40};
  if (share >= 0) progress_.share = share;
  if (Clock::now() - shown_ >= kBetweenLooks) Show();
}

// Work that ends at once shows everything soon enough.
bool LongWork::WantsFirstRows() {
  constexpr std::chrono::milliseconds kAtOnce{60};
  return !first_rows_shown_ && Clock::now() - began_ >= kAtOnce;
}

void LongWork::ShowFirstRows() {
  first_rows_shown_ = true;
  front_end_.ProcessEvents();
}

void LongWork::Show() {
  if (given_up_) return;
  const auto lasted = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - began_);
  given_up_ = front_end_.ShowProgress(progress_, lasted) && progress_.can_be_given_up;
  shown_ = Clock::now();
  if (given_up_) throw GivenUp();
}

}  // namespace tpv::ui
