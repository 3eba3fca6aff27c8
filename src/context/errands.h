// Work on the store that the operator does not wait for.
#pragma once

#include <functional>

namespace tpv {

struct Context;

class Errands {
 public:
  // `own` is a context for the errand alone, on the same store; `stop` says that the
  // program wants to end.
  using Errand = std::function<void(Context& own, const std::function<bool()>& stop)>;

  virtual ~Errands() = default;
  // Does it outside of the window's thread, behind those before it. An errand throws
  // nothing; one whose store cannot be reached is dropped.
  virtual void Run(Errand errand) = 0;
};

}  // namespace tpv
