// What other programs took of the machine while something was measured: figures
// taken meanwhile are worth little.
#pragma once

namespace tpv::bench {

class Disturbance {
 public:
  Disturbance() : start_(Now()) {}

  // Of one processor, since this began; 0 where the system does not tell. This
  // program's own work and that of programs which it started and waited for count not.
  double Share() const;

 private:
  struct Seconds {
    double wall = 0;
    double busy = 0;  // all processors, with what the host of this machine took
    double own = 0;
  };
  static Seconds Now();

  Seconds start_;
};

}  // namespace tpv::bench
