// Work that the operator does not wait for.
#pragma once

#include <functional>
#include <string>

namespace tpv {

struct Context;

class Errands {
 public:
  // `own` is a context for the errand alone, on the same store; `stop` says that the
  // program wants to end.
  using Errand = std::function<void(Context& own, const std::function<bool()>& stop)>;
  // What is left to do on the store, in the window's thread when it has a moment.
  using Rest = std::function<void(Context& context)>;
  using Work = std::function<Rest()>;

  virtual ~Errands() = default;
  // Whether errands reach the store; the connection of a host in another language is
  // its thread's alone.
  virtual bool ReachStore() const = 0;
  // Does it outside of the window's thread, behind those before it. An errand throws
  // nothing; one whose store cannot be reached is dropped.
  virtual void Run(Errand errand) = 0;
  // The same for work without the store; `dropped` instead of its rest when the program
  // ends before. Neither throws.
  virtual void RunApart(Work work, Rest dropped) = 0;
  // Invoice records that wait for the tax agency longer than ten minutes, as last counted
  // outside of the window's thread, which asks. Answers at once.
  virtual long OverdueRecords() { return 0; }
  // What keeps this machine from sending them, in Spanish; "" when it can.
  virtual std::string SendingObstacle() const { return {}; }
};

}  // namespace tpv
